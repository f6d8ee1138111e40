#!/usr/bin/env python3
"""What a page does in a browser. Usage: page_test.py DCM SOURCE_FOLDER

Each function below whose name ends a sentence is a test: "the page ...". Without Chromium nothing is tested.
"""
import os
import re
import subprocess
import sys
import tempfile

sys.dont_write_bytecode = True

from browser import Browser, find_chromium

kShownSections = "[...document.querySelectorAll('.ent')].filter(e => e.getClientRects().length).map(e => e.dataset.key)"
kShownLinks = "[...document.querySelectorAll('nav a')].filter(e => e.getClientRects().length).map(e => e.hash.slice(2))"
kFaulty = """<device><frame typeid="1"><maxslotnum>1</maxslotnum><slotmap><lpu>1</lpu></slotmap><slotinfo>
<slotid id="1"><supportcardtype>1,2,7</supportcardtype><maxcardnum>1</maxcardnum></slotid></slotinfo></frame>
<card typeid="1" abbrname="&lt;img src=x onerror=alert(1)>"><occupyslotnum>1</occupyslotnum><hidden/></card>
<card typeid="2"><porttypecap><portcap>nothing</portcap></porttypecap></card></device>"""


def equal(actual, expected):
    assert actual == expected, "%r, not %r" % (actual, expected)


def text_of(browser, selector):
    return browser.run("(document.querySelector(%r) || {}).textContent" % selector)


# ---- What it shows ---------------------------------------------------------------------------------------------------

def shows_one_section_at_a_time(browser, page):
    browser.open(page)
    equal(browser.run(kShownSections), ["frame-0x1"])
    browser.go("#/card-0x302-0")
    equal(browser.run(kShownSections), ["card-0x302-0"])
    equal(browser.run("document.querySelector('nav a[aria-current]').textContent.includes('ETH-54P')"), True)


def has_a_section_and_a_link_for_each_entity(browser, page):
    browser.open(page)
    keys = browser.run("[...document.querySelectorAll('.ent')].map(e => e.dataset.key)")
    equal(len(keys), 23)
    equal(sorted(browser.run(kShownLinks)), sorted(keys))


def gives_a_chassis_the_whole_width_until_a_slot_is_chosen(browser, page):
    width = "document.querySelector('#e-frame-0x1 .picture svg').getBoundingClientRect().width"
    browser.open(page)
    assert browser.run(width) > 1050, browser.run(width)
    browser.go("#/frame-0x1/3")
    assert browser.run(width) < 850, browser.run(width)


def shows_each_port_of_a_slot_type(browser, page):
    for key, last in (("slot-0x2", "syncIf.15"), ("slot-0x3", "sfuIf.23")):
        browser.open(page, "#/" + key)
        port = browser.run("(() => {const b = document.getElementById('%s.%s').getBoundingClientRect(); return [b.width, b.right]})()"
                           % (key, last))
        assert port[0] >= 12 and port[1] < 1400, port


def shows_everything_without_script(browser, page):
    browser.send("Emulation.setScriptExecutionDisabled", value=True)
    try:
        browser.open(page)
        equal(len(browser.run(kShownSections)), 23)
        equal(browser.run("document.querySelector('#search').getClientRects().length"), 0)
    finally:
        browser.send("Emulation.setScriptExecutionDisabled", value=False)


def asks_for_nothing_but_itself(browser, page):
    browser.open(page, "#/frame-0x1/3?3=card-0x302-0")
    browser.run("document.querySelector('#theme').click()")
    urls = {event["params"]["request"]["url"].split("#")[0] for event in browser.events
            if event["method"] == "Network.requestWillBeSent"}
    equal(urls, {"file://" + os.path.abspath(page)})
    faults = [event for event in browser.events if event["method"] in ("Runtime.exceptionThrown", "Log.entryAdded")]
    equal(faults, [])


# ---- Search ----------------------------------------------------------------------------------------------------------

def finds_what_has_all_words(browser, page):
    browser.open(page)
    browser.press("/")
    equal(browser.run("document.activeElement.id"), "search")
    browser.write("400ge flexe")
    equal(browser.run(kShownLinks), ["card-0x301-0"])
    equal(text_of(browser, "#count"), "1 of 23")
    browser.press("Enter")
    browser.run("new Promise(done => setTimeout(done, 50))")
    equal(browser.run(kShownSections), ["card-0x301-0"])
    browser.run("document.querySelector('#search').value = ''; document.querySelector('#search').oninput()")
    equal(len(browser.run(kShownLinks)), 23)


# ---- Cards in slots --------------------------------------------------------------------------------------------------

def fits_a_card_by_a_click_and_keeps_it_in_the_address(browser, page):
    browser.open(page)
    equal(browser.run("document.querySelector('#e-frame-0x1 .panel').hidden"), True)
    browser.click("#frame-0x1\\.slot\\.3 > text")
    equal(text_of(browser, "#e-frame-0x1 .panel h3 + small"), "line")
    equal(text_of(browser, "#e-frame-0x1 .panel h3"), "Slot 3")
    browser.click("#e-frame-0x1 [aria-label='fit ETH-54P into slot 3']")
    equal(browser.run("location.hash"), "#/frame-0x1/3?3=card-0x302-0")
    equal(browser.run("document.querySelectorAll('.fits use').length"), 1)
    equal(browser.run("document.querySelector('#frame-0x1\\\\.slot\\\\.3').classList.contains('filled')"), True)
    browser.click("#e-frame-0x1 [aria-label='take ETH-54P out of slot 3']")
    equal(browser.run("location.hash"), "#/frame-0x1/3")
    equal(browser.run("document.querySelectorAll('.fits use').length"), 0)


def shows_the_cards_of_its_address(browser, page):
    browser.open(page, "#/frame-0x1?3=card-0x302-0&1=card-0x401-0&8=card-0x302-0&5=nothing&99=card-0x302-0")
    equal(browser.run("document.querySelectorAll('.fits use').length"), 2)
    equal(text_of(browser, ".fits .reft"), "ETH-54P refused: slot 8 accepts MCU-A")
    equal(browser.run("document.querySelector('.panel').hidden"), True)
    boxes = browser.run("['1', '2'].map(n => document.querySelector(`[id='frame-0x1.slot.${n}']`).getBoundingClientRect().bottom)"
                        ".concat([...document.querySelectorAll('.fits > g')].map(e => e.getBoundingClientRect().bottom))")
    assert boxes[0] < boxes[1] and max(boxes[2:4]) > boxes[0], boxes


def says_why_a_card_does_not_fit(browser, page):
    cases = [("3=card-0x302-0&3=card-0x302-0", 3, "ETH-54P", "slot 3 is full: it holds 2"),
             ("1=card-0x401-0", 2, "ETH-54P", "slot 2 is taken by OTN-2L8C in slot 1"),
             ("2=card-0x302-0", 1, "OTN-2L8C", "it takes slots 1–2, and slot 2 is not empty"),
             ("", 2, "OTN-2L8C", "it takes slots 2–3, and slot 2 may not span them")]
    for fits, slot, card, reason in cases:
        browser.open(page, "#/frame-0x1/%d?%s" % (slot, fits))
        choice = "[...document.querySelectorAll('.panel .choice')].find(e => e.querySelector('.fit') && e.textContent.includes(%r))" % card
        equal(browser.run(choice + ".querySelector('.why').textContent"), reason)
        equal(browser.run(choice + ".querySelector('.fit').disabled"), True)


def takes_no_harm_from_an_odd_address(browser, page):
    for address in ("#/frame-0x1?%", "#/none", "#/frame-0x1/99", "#/frame-0x1/x?=&&=&3", "#/frame-0x1?__proto__=card-0x302-0&3=__proto__",
                    "#/card-0x302-0?3=card-0x302-0", "#/frame-0x1?" + "&".join(["3=card-0x302-0"] * 100)):
        browser.open(page, address)
        equal(len(browser.run(kShownSections)), 1)
        assert not [event for event in browser.events if event["method"] == "Runtime.exceptionThrown"], address
        assert browser.run("document.querySelectorAll('.fits > g').length") <= 8, address


def is_used_with_the_keyboard(browser, page):
    browser.open(page)
    browser.run("document.querySelector('[id=\"frame-0x1.slot.4\"]').focus()")
    browser.press("Enter")
    equal(text_of(browser, "#e-frame-0x1 .panel h3"), "Slot 4")
    equal(browser.run("document.activeElement.className"), "close")
    browser.press("Tab")
    browser.press("Tab")
    equal(browser.run("document.activeElement.getAttribute('aria-label')"), "fit ETH-6M into slot 4")
    browser.press(" ")
    equal(browser.run("location.hash"), "#/frame-0x1/4?4=card-0x301-0")
    browser.press("Escape")
    equal(browser.run("document.querySelector('#e-frame-0x1 .panel').hidden"), True)
    equal(browser.run("document.activeElement.id"), "frame-0x1.slot.4")


def names_its_controls_for_a_screen_reader(browser, page):
    browser.open(page, "#/frame-0x1/3?3=card-0x302-0")
    nodes = [node for node in browser.send("Accessibility.getFullAXTree")["nodes"] if not node.get("ignored")]
    named = {}
    for node in nodes:
        named.setdefault(node["role"]["value"], []).append(node.get("name", {}).get("value", ""))
    for role in ("button", "link", "searchbox", "combobox", "navigation"):
        assert named.get(role) and all(named[role]), (role, named.get(role))
    slots = [name for name in named["button"] if name.startswith("slot ")]
    equal(len(slots), 22)
    assert any("slot 3 (line)" in name and "holds ETH-54P" in name for name in slots), slots


# ---- LEDs ------------------------------------------------------------------------------------------------------------

kLamp = "getComputedStyle(document.querySelector('[id=\"card-0x101-0.led.0\"]'))"


def lights_leds_in_the_chosen_state(browser, page):
    browser.open(page, "#/card-0x101-0")
    equal(browser.run(kLamp + ".fill"), "rgb(31, 168, 74)")
    browser.run("const select = document.querySelector('#state'); select.value = 'losconnect'; select.onchange()")
    equal(browser.run(kLamp + ".fill"), "rgb(217, 43, 43)")
    equal(browser.run(kLamp + ".animationName + ' ' + " + kLamp + ".animationDuration"), "blink 2s")
    browser.run("document.querySelector('#e-card-0x101-0 [data-state=upgrade]').click()")
    equal(browser.run(kLamp + ".animationDuration"), "0.5s")
    equal(browser.run("document.querySelector('#e-card-0x101-0 [data-state=upgrade]').getAttribute('aria-pressed')"), "true")


def lights_leds_of_cards_in_slots(browser, page):
    browser.open(page, "#/frame-0x1?7=card-0x101-0")
    style = "getComputedStyle(document.querySelector('#m-card-0x101-0-whole .led')).fill"
    equal(browser.run(style), "rgb(31, 168, 74)")
    browser.run("const select = document.querySelector('#state'); select.value = 'abnormal'; select.onchange()")
    equal(browser.run(style), "rgb(217, 43, 43)")


def does_not_blink_for_those_who_mind_motion(browser, page):
    browser.media(prefers_reduced_motion="reduce")
    try:
        browser.open(page, "#/card-0x101-0")
        browser.run("document.querySelector('#e-card-0x101-0 [data-state=upgrade]').click()")
        equal(browser.run(kLamp + ".animationName"), "none")
        equal(browser.run(kLamp + ".fill"), 'url("#d-green")')
    finally:
        browser.media()


# ---- Light, dark, print, narrow --------------------------------------------------------------------------------------

kColours = "['body', '.ent', '.plate'].map(s => {const c = getComputedStyle(document.querySelector(s)); return s == '.plate' ? c.fill : c.backgroundColor})"


def is_dark_where_the_system_or_the_button_says_so(browser, page):
    dark = ["rgb(14, 19, 24)", "rgb(22, 28, 35)", "rgb(40, 49, 59)"]
    browser.open(page)
    light = browser.run(kColours)
    assert light != dark
    browser.click("#theme")
    equal(browser.run(kColours), dark)
    equal(text_of(browser, "#theme"), "Light")
    browser.media(prefers_color_scheme="dark")
    try:
        browser.open(page)
        equal(browser.run(kColours), dark)
        browser.click("#theme")
        equal(browser.run(kColours), light)
    finally:
        browser.media()


def prints_everything_in_light_colours(browser, page):
    browser.open(page, "#/card-0x302-0")
    browser.click("#theme")
    browser.media("print")
    try:
        equal(len(browser.run(kShownSections)), 23)
        for hidden in ("#search", "#state", "#theme", "nav"):
            equal(browser.run("document.querySelector(%r).getClientRects().length" % hidden), 0)
        equal(browser.run("getComputedStyle(document.body).backgroundColor"), "rgb(255, 255, 255)")
    finally:
        browser.media()
    pages = len(re.findall(rb"/Type\s*/Page\b", browser.pdf()))
    assert 5 <= pages <= 23, pages


def is_no_wider_than_a_phone(browser, page):
    browser.resize(400, 800)
    try:
        browser.open(page)
        for key in browser.run("[...document.querySelectorAll('.ent')].map(e => e.dataset.key)"):
            browser.go("#/" + key)
            width = browser.run("document.documentElement.scrollWidth")
            assert width <= 400, (key, width)
        browser.go("#/frame-0x1")
        equal(browser.run("document.querySelector('#e-frame-0x1 .picture svg').getBoundingClientRect().right <= 400"), True)
        equal(browser.run(kShownLinks), [])
        browser.click("#menu")
        equal(len(browser.run(kShownLinks)), 23)
        browser.go("#/frame-0x1/3")
        box = browser.run("(() => {const b = document.querySelector('#e-frame-0x1 .panel').getBoundingClientRect(); return [b.left, b.right, b.bottom]})()")
        equal(box, [0, 400, 800])
        browser.run("document.querySelector('#e-frame-0x1 .zoom').click()")
        assert browser.run("document.querySelector('#e-frame-0x1 .picture svg').getBoundingClientRect().width") > 1000
    finally:
        browser.resize(1440, 900)


def keeps_text_inside_its_boxes(browser, page):
    browser.open(page)
    outside = browser.run("""(() => {
        const outside = [];
        for (const section of document.querySelectorAll('.ent')) {
            section.style.display = 'block';
            for (const text of section.querySelectorAll('.picture text')) {
                const box = text.getBoundingClientRect();
                const around = text.closest('svg').getBoundingClientRect();
                if (box.left < around.left || box.right > around.right + 1) outside.push(text.textContent);
            }
        }
        return outside;
    })()""")
    equal(outside, [])


# ---- Faulty descriptions ---------------------------------------------------------------------------------------------

def shows_findings_and_failing_queries(browser, page):
    browser.open(page.replace("device", "faulty"))
    equal(browser.run("[...document.querySelectorAll('header .badge')].map(e => e.textContent)")[0], "1 error")
    browser.go("#/card-0x2-0")
    equal(browser.run("document.querySelector('#e-card-0x2-0 .found .bad, #e-card-0x2-0 .found li.bad') !== null"), True)
    equal(text_of(browser, "#e-card-0x2-0 .fails"), "The query of this type fails.")
    equal(text_of(browser, "nav a[href='#/card-0x2-0'] small"), "fails")
    browser.go("#/frame-0x1/1")
    panel = text_of(browser, "#e-frame-0x1 .panel")
    assert "0x0002 its query fails" in panel and "0x0007 no card of this type is described" in panel, panel


def takes_no_markup_from_the_file(browser, page):
    browser.open(page.replace("device", "faulty"), "#/frame-0x1/1?1=card-0x1-0")
    equal(browser.run("document.querySelectorAll('img').length"), 0)
    assert "<img src=x" in text_of(browser, "#e-frame-0x1 .panel .choice")


# ---- Running ---------------------------------------------------------------------------------------------------------

def screenshots(browser, page, folder):
    def shoot(name, address, width=1440, height=900, before="", file=page):
        browser.resize(width, height)
        browser.open(file, address)
        if before:
            browser.run(before)
        browser.screenshot(os.path.join(folder, name + ".png"))

    fits = "?17=card-0x701-0&1=card-0x401-0&3=card-0x302-0&4=card-0x501-0&5=card-0x303-0&5=card-0x301-0&7=card-0x101-0&8=card-0x302-0"
    shoot("frame", "#/frame-0x1")
    shoot("frame-fitted", "#/frame-0x1/3" + fits)
    shoot("card", "#/card-0x302-0", before="document.querySelector('#e-card-0x302-0 [data-state=deliver]').click()")
    shoot("card-tall", "#/card-0x401-0", height=1700)
    shoot("slot", "#/slot-0x2")
    shoot("dark", "#/frame-0x1/3" + fits, before="document.querySelector('#theme').click()")
    shoot("phone", "#/frame-0x1", 400, 800)
    shoot("phone-slot", "#/frame-0x1/3" + fits, 400, 800)
    shoot("phone-card", "#/card-0x302-0", 400, 800)
    for name, address in (("findings", "#/frame-0x1/1"), ("findings-card", "#/card-0x2-0")):
        shoot(name, address, file=page.replace("device", "faulty"))
    with open(os.path.join(folder, "print.pdf"), "wb") as file:
        browser.resize(1440, 900)
        browser.open(page, "")
        file.write(browser.pdf())


def main():
    dcm, source = sys.argv[1:3]
    chromium = find_chromium()
    if chromium is None:
        print("skipped: chromium is not installed")
        return 77
    with tempfile.TemporaryDirectory() as folder:
        page = os.path.join(folder, "device.html")
        subprocess.run([dcm, "page", os.path.join(source, "examples/device.xml"), "-o", page], check=True)
        with open(os.path.join(folder, "faulty.xml"), "w", encoding="utf-8") as file:
            file.write(kFaulty)
        subprocess.run([dcm, "page", os.path.join(folder, "faulty.xml"), "-o", os.path.join(folder, "faulty.html")],
                       check=False)
        browser = Browser(chromium)
        try:
            if len(sys.argv) > 3 and sys.argv[3] == "--screenshots":
                screenshots(browser, page, sys.argv[4])
                return 0
            return run_tests(browser, page, sys.argv[3:])
        finally:
            browser.close()


def run_tests(browser, page, wanted):
    tests = [value for name, value in globals().items()
             if callable(value) and getattr(value, "__code__", None) and value.__code__.co_varnames[:2] == ("browser", "page")
             and value.__code__.co_argcount == 2 and (not wanted or name in wanted)]
    failed = 0
    for test in tests:
        try:
            test(browser, page)
        except AssertionError as error:
            failed += 1
            print("not so: the page %s: %s" % (test.__name__.replace("_", " "), error))
    print("%d passed, %d failed" % (len(tests) - failed, failed))
    return 1 if failed or not tests else 0


if __name__ == "__main__":
    sys.exit(main())
