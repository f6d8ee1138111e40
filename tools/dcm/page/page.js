'use strict';
(() => {
  const data = JSON.parse(document.getElementById('data').textContent);
  const one = (selector, root = document) => root.querySelector(selector);
  const all = (selector, root = document) => [...root.querySelectorAll(selector)];
  const kSvg = 'http://www.w3.org/2000/svg';
  const kMostFits = 8;

  // make('button', {class: 'fit'}, 'text', node, ...)
  function fill(node, attributes, children) {
    for (const [name, value] of Object.entries(attributes))
      if (value !== undefined) node.setAttribute(name, value);
    node.append(...children);
    return node;
  }
  const make = (tag, attributes = {}, ...children) => fill(document.createElement(tag), attributes, children);
  const draw = (tag, attributes = {}, ...children) => fill(document.createElementNS(kSvg, tag), attributes, children);

  // ---- Cards in slots ------------------------------------------------------------------------------------------------

  const fits = {}; // by frame: [{slot, card}] in the order of fitting
  const hexadecimal = (type) => '0x' + type.toString(16).padStart(4, '0');
  const range = (first, last) => (first === last ? `${first}` : `${first}–${last}`);

  // The result of each fit: the reason if it is refused.
  function placed(frame, wanted) {
    const slots = {};
    const at = (slot) => (slots[slot] = slots[slot] || {fits: 0, cards: 0, taken: ''});
    return wanted.map(({slot, card: key}) => {
      const rule = data.frames[frame][slot];
      const card = data.cards[key];
      const position = at(slot).fits++;
      const refusal = refusalOf(rule, slot, card, at);
      if (!refusal) {
        at(slot).cards++;
        for (let i = 1; i < card.slots; i++) at(slot + i).taken = `${card.name} in slot ${slot}`;
      }
      return {slot, key, card, position, refusal};
    });
  }

  function refusalOf(rule, slot, card, at) {
    if (!rule) return `there is no slot ${slot}`;
    if (!rule.types.includes(card.type))
      return `slot ${slot} accepts ${rule.types.map((type) => data.names[type]).join(', ') || 'no card'}`;
    if (at(slot).taken) return `slot ${slot} is taken by ${at(slot).taken}`;
    if (at(slot).cards >= rule.max) return `slot ${slot} is full: it holds ${rule.max}`;
    const last = slot + card.slots - 1;
    for (let other = slot; card.slots > 1 && other <= last; other++)
      if (!rule.span.includes(other)) return `it takes slots ${range(slot, last)}, and slot ${slot} may not span them`;
    for (let other = slot + 1; other <= last; other++)
      if (at(other).cards || at(other).taken)
        return `it takes slots ${range(slot, last)}, and slot ${other} is not empty`;
    return '';
  }

  const refusal = (frame, slot, key) => placed(frame, [...(fits[frame] || []), {slot, card: key}]).pop().refusal;
  const groupOf = (frame, slot) => one(`#e-${frame} [data-slot="${slot}"]`);
  const roomOf = (group) => group.dataset.room.split(' ').map(Number);

  // A miniature in a box, stretched a little to fill it.
  function miniature(key, [x, y, width, height], isWhole) {
    const kWidths = {whole: 938, half: 468};
    const which = isWhole ? 'whole' : 'half';
    const full = 34 + (data.cards[key].slots - 1) * 44;
    const stretch = Math.abs(width / kWidths[which] / (height / full) - 1) < 0.35 ? 'none' : 'xMinYMid';
    return draw('svg', {x, y, width, height, viewBox: `0 0 ${kWidths[which]} ${full}`, preserveAspectRatio: stretch},
        draw('use', {href: `#m-${key}-${which}`}));
  }

  function refused({card, refusal: why}, [x, y, width, height]) {
    const words = draw('text', {class: 'reft', x: x + 32, y: y + height / 2 + 4}, `${card.name} refused: ${why}`);
    return draw('g', {class: 'g-refused'}, draw('title', {}, words.textContent),
        draw('rect', {class: 'refuse', x, y, width, height, rx: 3}),
        draw('path', {class: 'refx', d: `M${x + 10} ${y + height / 2 - 5}l10 10m0 -10l-10 10`}), words);
  }

  function showFits(frame) {
    const picture = one(`#e-${frame} .chassis svg`);
    all('.fits', picture).forEach((layer) => layer.remove());
    all('.filled', picture).forEach((slot) => slot.classList.remove('filled'));
    const layer = draw('g', {class: 'fits', style: 'pointer-events:none'});
    const results = placed(frame, fits[frame] || []);
    for (const result of results) {
      const group = groupOf(frame, result.slot);
      if (!group) continue;
      group.classList.add('filled');
      const [x, y, width, height] = roomOf(group);
      const count = results.filter((other) => other.slot === result.slot).length;
      const cell = [x + result.position * width / count, y, width / count - (count > 1 ? 3 : 0), height];
      if (result.refusal) {
        layer.append(refused(result, cell));
        continue;
      }
      for (let i = 1; i < result.card.slots; i++) {
        const next = groupOf(frame, result.slot + i);
        if (!next) continue;
        next.classList.add('filled');
        const [, top, , high] = roomOf(next);
        if (top > y) cell[3] = top + high - y;
      }
      layer.append(draw('g', {}, draw('title', {}, `${result.card.name}: ${result.card.long}`),
          draw('rect', {class: 'plate', x: cell[0], y, width: cell[2], height: cell[3], rx: 3}),
          miniature(result.key, cell, count === 1 && width > 500)));
    }
    picture.append(layer);
    for (const group of all('[data-slot]', picture)) {
      const inside = results.filter((result) => result.slot === Number(group.dataset.slot));
      group.setAttribute('aria-label', [one('title', group).textContent, ...inside.map(
          ({card, refusal: why}) => (why ? `${card.name} refused: ${why}` : `holds ${card.name}`))].join('; '));
    }
  }

  // ---- The panel of a slot -------------------------------------------------------------------------------------------

  function changeFits(frame, slot, wanted) {
    fits[frame] = wanted;
    showFits(frame);
    showSlot(frame, slot);
    writeAddress();
  }

  function choice(frame, slot, key) {
    const card = data.cards[key];
    const why = refusal(frame, slot, key);
    const button = make('button', {type: 'button', class: 'fit'}, 'fit');
    button.setAttribute('aria-label', `fit ${card.name} into slot ${slot}`);
    button.disabled = why !== '';
    button.onclick = () => changeFits(frame, slot, [...(fits[frame] || []), {slot, card: key}]);
    const hasModes = Object.values(data.cards).filter(({type}) => type === card.type).length > 1;
    const type = hexadecimal(card.type) + (hasModes || card.mode ? ` mode ${card.mode}` : '');
    const height = 34 + (card.slots - 1) * 44;
    return make('div', {class: 'choice'},
        make('div', {class: 'row'}, make('a', {href: '#/' + key}, card.name), make('small', {}, type), button),
        make('p', {}, card.long), ...(why ? [make('p', {class: 'why'}, why)] : []),
        draw('svg', {viewBox: `0 0 468 ${height}`, 'aria-hidden': true}, draw('use', {href: `#m-${key}-half`})));
  }

  function fittedList(frame, slot) {
    return placed(frame, fits[frame] || []).map((result, index) => [result, index])
        .filter(([result]) => result.slot === slot).map(([result, index]) => {
          const button = make('button', {type: 'button', class: 'out'}, 'take out');
          button.setAttribute('aria-label', `take ${result.card.name} out of slot ${slot}`);
          button.onclick = () => changeFits(frame, slot, fits[frame].filter((fit, at) => at !== index));
          return make('div', {class: 'choice'},
              make('div', {class: 'row'}, make('a', {href: '#/' + result.key}, result.card.name),
                  make('small', {}, result.refusal ? 'refused' : 'fitted'), button),
              ...(result.refusal ? [make('p', {class: 'why'}, result.refusal)] : []));
        });
  }

  function showSlot(frame, slot) {
    const panel = one(`#e-${frame} .panel`);
    const rule = data.frames[frame][slot];
    const group = groupOf(frame, slot);
    all('.slotted.on').forEach((other) => other.classList.remove('on'));
    if (!group || !rule) return hideSlot(frame);
    group.classList.add('on');
    current.slot = slot;
    const close = make('button', {type: 'button', class: 'close', 'aria-label': 'close'}, '×');
    close.onclick = () => leaveSlot(frame);
    const ids = rule.max === 0 ? 'takes no card' : rule.max === 1 ? `1 card, id ${rule.first}` :
        `${rule.max} cards, ids ${range(rule.first, rule.first + rule.max - 1)}`;
    const span = rule.span.length > 1 ? ` · may span slots ${rule.span.join(', ')}` : '';
    const accepted = Object.keys(data.cards).filter((key) => rule.types.includes(data.cards[key].type));
    const described = new Set(accepted.map((key) => data.cards[key].type));
    const missing = rule.types.filter((type) => !described.has(type)).map((type) => make('div', {class: 'choice'},
        make('b', {}, hexadecimal(type)),
        data.fails.includes(type) ? ' its query fails' : ' no card of this type is described'));
    panel.replaceChildren(close, make('h3', {}, `Slot ${slot}`),
        make('small', {}, one('title', group).textContent.match(/\((.*?)\)/)[1]), make('p', {class: 'hint'}, ids + span),
        ...fittedList(frame, slot), ...accepted.map((key) => choice(frame, slot, key)), ...missing);
    panel.hidden = false;
    panel.parentNode.classList.add('open');
  }

  function hideSlot(frame) {
    const panel = one(`#e-${frame} .panel`);
    panel.hidden = true;
    panel.parentNode.classList.remove('open');
    all('.slotted.on').forEach((other) => other.classList.remove('on'));
    current.slot = 0;
  }

  function leaveSlot(frame) {
    const group = groupOf(frame, current.slot);
    hideSlot(frame);
    writeAddress();
    if (group) group.focus();
  }

  // ---- The address: #/frame-0x1/4?3=card-0x302-0&5=card-0x301-0 -----------------------------------------------------

  const current = {key: '', slot: 0};

  function writeAddress() {
    const query = (fits[current.key] || []).map(({slot, card}) => `${slot}=${card}`).join('&');
    const slot = current.slot ? '/' + current.slot : '';
    history.replaceState(null, '', `#/${current.key}${slot}${query ? '?' + query : ''}`);
  }

  function readFits(frame, query) {
    const counts = {};
    return query.split('&').map((part) => part.split('=')).map(([slot, card]) => ({slot: Number(slot), card}))
        .filter(({slot, card}) => Object.hasOwn(data.cards, card) && Object.hasOwn(data.frames[frame], slot) &&
            (counts[slot] = (counts[slot] || 0) + 1) <= kMostFits);
  }

  function go() {
    let address = '';
    try {
      address = decodeURIComponent(location.hash.slice(1)).replace(/^\//, '');
    } catch {
      // An address with a single "%" opens the first page.
    }
    const [path, query] = address.split('?');
    const [wanted, slot] = path.split('/');
    const sections = all('.ent');
    const section = sections.find((other) => other.dataset.key === wanted) || sections[0];
    if (!section) return;
    current.key = section.dataset.key;
    current.slot = 0;
    sections.forEach((other) => other.classList.toggle('on', other === section));
    all('nav a').forEach((link) => {
      if (link.hash === '#/' + current.key) link.setAttribute('aria-current', 'page');
      else link.removeAttribute('aria-current');
    });
    one('nav').classList.remove('open');
    one('#menu').setAttribute('aria-expanded', false);
    if (Object.hasOwn(data.frames, current.key)) {
      if (query !== undefined) fits[current.key] = readFits(current.key, query);
      showFits(current.key);
      if (Number(slot)) showSlot(current.key, Number(slot));
      else hideSlot(current.key);
      writeAddress();
    }
    scrollTo(0, 0);
  }

  // ---- LEDs ----------------------------------------------------------------------------------------------------------

  const chosen = {}; // the state that a button has chosen, by key

  function ruleFor(key, [colour, freq]) {
    const isBlinking = freq.endsWith('-blink');
    const rule = `fill:var(--${colour});stroke:var(--${colour}-line);` +
        `fill-opacity:${freq === 'off' ? 0.1 : freq === 'none' ? 0 : 1};` +
        `stroke-dasharray:${freq === 'none' ? '1.5 1.8' : 'none'};` +
        `animation:${isBlinking ? `blink ${freq === 'slow-blink' ? 2 : 0.5}s steps(1,end) infinite` : 'none'}`;
    const still = isBlinking ? `@media (prefers-reduced-motion:reduce){.led.${key}{fill:url(#${freq[0] === 's' ? 'h' : 'd'}-${colour})}}` : '';
    return `.led.${key}{${rule}}${still}\n`;
  }

  function light() {
    const state = one('#state').value;
    let rules = '';
    for (const [key, looks] of Object.entries(data.leds)) {
      const look = looks[chosen[key]] || looks[state] || looks.default;
      if (look) rules += ruleFor(key, look);
    }
    one('#lit').textContent = rules;
    all('.state').forEach((button) => button.setAttribute('aria-pressed', chosen[button.dataset.key] === button.dataset.state));
  }

  // ---- Search --------------------------------------------------------------------------------------------------------

  const texts = new Map(all('.ent').map((section) => [section.dataset.key,
    [section.dataset.key, section.textContent, ...all('[aria-label]', section).map((node) => node.ariaLabel)].join(' ').toLowerCase()]));

  function search() {
    const words = one('#search').value.toLowerCase().split(/\s+/).filter(Boolean);
    let count = 0;
    for (const link of all('nav a')) {
      const text = texts.get(link.hash.slice(2)) || '';
      const isFound = words.every((word) => text.includes(word));
      link.classList.toggle('out', !isFound);
      count += isFound ? 1 : 0;
    }
    one('#count').textContent = words.length ? `${count} of ${texts.size}` : '';
    one('nav').classList.toggle('open', words.length > 0);
  }

  // ---- Light and dark ------------------------------------------------------------------------------------------------

  function setTheme(isDark) {
    one('#dark').media = isDark ? 'screen' : 'not all';
    one('#theme').textContent = isDark ? 'Light' : 'Dark';
  }

  // ---- Start ---------------------------------------------------------------------------------------------------------

  document.documentElement.classList.add('js');
  for (const group of all('.chassis [data-slot]')) {
    group.classList.add('slotted');
    group.setAttribute('tabindex', 0);
    group.setAttribute('role', 'button');
    const choose = () => {
      showSlot(current.key, Number(group.dataset.slot));
      writeAddress();
    };
    group.onclick = choose;
    group.onkeydown = (event) => {
      if (event.key !== 'Enter' && event.key !== ' ') return;
      event.preventDefault();
      choose();
      one(`#e-${current.key} .panel button`).focus();
    };
  }
  for (const picture of all('.picture')) {
    const button = make('button', {type: 'button', class: 'zoom', 'aria-pressed': false}, 'Enlarge');
    button.onclick = () => button.setAttribute('aria-pressed', picture.classList.toggle('near'));
    picture.before(button);
  }
  all('.state').forEach((button) => {
    button.onclick = () => {
      const {key, state} = button.dataset;
      if (chosen[key] === state) delete chosen[key];
      else chosen[key] = state;
      light();
    };
  });
  one('#state').onchange = () => {
    Object.keys(chosen).forEach((key) => delete chosen[key]);
    light();
  };
  let isDark = matchMedia('(prefers-color-scheme:dark)').matches;
  setTheme(isDark);
  one('#theme').onclick = () => setTheme(isDark = !isDark);
  one('#menu').onclick = () =>
    one('#menu').setAttribute('aria-expanded', one('nav').classList.toggle('open'));
  one('#search').oninput = search;
  one('#search').onkeydown = (event) => {
    const first = one('nav a:not(.out)');
    if (event.key === 'Enter' && first) location.hash = first.hash;
  };
  addEventListener('keydown', (event) => {
    if (event.key === '/' && !/INPUT|SELECT/.test(event.target.tagName)) {
      event.preventDefault();
      one('#search').focus();
    }
    if (event.key === 'Escape' && current.slot) leaveSlot(current.key);
  });
  addEventListener('hashchange', go);
  light();
  go();
})();
