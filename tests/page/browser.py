"""A headless Chromium, driven over a pipe with the DevTools protocol, with Python's own library only."""
import base64
import json
import os
import shutil
import subprocess
import tempfile
import time


def find_chromium():
    for name in ("chromium", "chromium-browser", "google-chrome"):
        path = shutil.which(name)
        if path:
            return path
    return None


class Browser:
    def __init__(self, chromium):
        self.folder = tempfile.mkdtemp()
        # Chromium reads commands from descriptor 3 and writes answers to 4.
        read_commands, self.commands = os.pipe()
        self.answers, write_answers = os.pipe()
        command = [chromium, "--headless=new", "--no-sandbox", "--disable-gpu", "--disable-dev-shm-usage",
                   "--remote-debugging-pipe", "--user-data-dir=" + self.folder, "--hide-scrollbars", "about:blank"]

        def take_pipes():
            high = (os.dup(read_commands), os.dup(write_answers))
            os.dup2(high[0], 3)
            os.dup2(high[1], 4)

        self.process = subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                                        stderr=subprocess.DEVNULL, preexec_fn=take_pipes, close_fds=False)
        os.close(read_commands)
        os.close(write_answers)
        self.received = b""
        self.last = 0
        self.session = None
        self.events = []
        target = self.send("Target.createTarget", url="about:blank")["targetId"]
        self.session = self.send("Target.attachToTarget", targetId=target, flatten=True)["sessionId"]
        for domain in ("Page", "Runtime", "Network", "Log"):
            self.send(domain + ".enable")
        self.resize(1440, 900)

    def close(self):
        try:
            self.session = None
            self.send("Browser.close")
        except (OSError, AssertionError):
            pass
        self.process.wait(20)
        shutil.rmtree(self.folder, ignore_errors=True)

    def message(self):
        while b"\0" not in self.received:
            part = os.read(self.answers, 1 << 20)
            assert part, "the browser has ended"
            self.received += part
        text, self.received = self.received.split(b"\0", 1)
        return json.loads(text)

    def send(self, method, **parameters):
        self.last += 1
        command = {"id": self.last, "method": method, "params": parameters}
        if self.session:
            command["sessionId"] = self.session
        os.write(self.commands, json.dumps(command).encode() + b"\0")
        while True:
            message = self.message()
            if message.get("id") == self.last:
                assert "error" not in message, (method, message["error"])
                return message["result"]
            self.events.append(message)

    def run(self, script):
        """The value of an expression in the page."""
        result = self.send("Runtime.evaluate", expression=script, returnByValue=True, awaitPromise=True)
        assert "exceptionDetails" not in result, (script, result.get("exceptionDetails"))
        return result["result"].get("value")

    def open(self, page, address=""):
        """Loads a file again."""
        self.events.clear()
        self.send("Page.navigate", url="about:blank")
        self.send("Page.navigate", url="file://" + os.path.abspath(page) + address)
        for _ in range(200):
            if self.run("document.readyState") == "complete" and self.run("location.protocol") == "file:":
                return
            time.sleep(0.05)
        raise AssertionError("the page does not load")

    def go(self, address):
        """Follows a link within the page."""
        self.run("new Promise(done => {addEventListener('hashchange', () => setTimeout(done), {once: true});"
                 "setTimeout(done, 300); location.hash = %s})" % json.dumps(address))

    def resize(self, width, height):
        self.send("Emulation.setDeviceMetricsOverride", width=width, height=height, deviceScaleFactor=1,
                  mobile=width < 500)

    def press(self, key, text=None):
        codes = {"Enter": 13, "Escape": 27, "Tab": 9, " ": 32, "/": 191}
        parameters = {"key": key, "windowsVirtualKeyCode": codes.get(key, ord(key[0].upper()))}
        if text or len(key) == 1:
            parameters["text"] = text or key
        if key == "Enter":
            parameters["text"] = "\r"
        self.send("Input.dispatchKeyEvent", type="keyDown", **parameters)
        self.send("Input.dispatchKeyEvent", type="keyUp", key=key)

    def write(self, text):
        self.send("Input.insertText", text=text)

    def click(self, selector):
        """Clicks the middle of what the selector finds with the mouse."""
        x, y = self.run("(() => {const node = document.querySelector(%s); node.scrollIntoView({block: 'center', behavior: 'instant'});"
                        "const box = node.getBoundingClientRect(); return [box.x + box.width / 2, box.y + box.height / 2]})()"
                        % json.dumps(selector))
        for kind in ("mousePressed", "mouseReleased"):
            self.send("Input.dispatchMouseEvent", type=kind, x=x, y=y, button="left", clickCount=1)

    def media(self, kind="", **features):
        self.send("Emulation.setEmulatedMedia", media=kind,
                  features=[{"name": name.replace("_", "-"), "value": value} for name, value in features.items()])

    def screenshot(self, path):
        image = self.send("Page.captureScreenshot", format="png")["data"]
        with open(path, "wb") as file:
            file.write(base64.b64decode(image))

    def pdf(self):
        return base64.b64decode(self.send("Page.printToPDF", printBackground=True, preferCSSPageSize=False)["data"])
