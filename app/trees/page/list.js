// The list in the middle: rows of an outline, or of what was found

function outlineRows() {
  const tree = data.trees[view.tree];
  const folded = view.folded[view.tree];
  const hideOff = !element("show-off").checked;
  const rows = [];
  for (let i = 0; i < tree.types.length; ) {
    if (hideOff && !isLive(tree, i)) {
      i = tree.end[i];
      continue;
    }
    rows.push({ tree: view.tree, node: i });
    i = folded.has(i) ? tree.end[i] : i + 1;
  }
  return rows;
}

// The text with what was searched for marked.
function marked(text) {
  const words = view.found ? wordsOf(view.query) : [];
  if (words.length === 0) return [text];
  const parts = [];
  const lower = text.toLowerCase();
  for (let at = 0; at < text.length; ) {
    let next = -1;
    let length = 0;
    for (const word of words) {
      const place = lower.indexOf(word, at);
      if (place >= 0 && (next < 0 || place < next)) [next, length] = [place, word.length];
    }
    if (next < 0) {
      parts.push(text.slice(at));
      break;
    }
    parts.push(text.slice(at, next), make("mark", {}, text.slice(next, next + length)));
    at = next + length;
  }
  return parts;
}

// A port's text, with the keys and the tree in it as links.
function linked(tree, node, text) {
  if (tree.enters[node] && text.includes(tree.enters[node]) && byName.has(tree.enters[node]))
    return [link(hashOf("tree", tree.enters[node]), ...marked(text))];
  const keys = (tree.keys.get(node) ?? []).map(([key]) => key);
  if (keys.includes(text)) return [link(hashOf("key", text), ...marked(text))];
  return text
    .split(/(\$\{[^}]*\})/)
    .filter(Boolean)
    .flatMap((part) => {
      const key = part.slice(2, -1);
      return part.startsWith("${") && keys.includes(key) ? [link(hashOf("key", key), ...marked(part))] : marked(part);
    });
}

function nodeParts(tree, node) {
  const type = typeOf(tree, node);
  const parts = [make("span", { class: type.kind }, ...marked(type.name))];
  if (labelOf(tree, node)) parts.push(" ", make("span", { class: "label" }, "\u201c", ...marked(labelOf(tree, node)), "\u201d"));
  const ports = tree.ports[node];
  for (let i = 0; i < ports.length; i += 2)
    parts.push(
      " ",
      make("span", { class: "port" }, ...marked(ports[i]), "="),
      make("span", { class: "text" }, ...linked(tree, node, ports[i + 1].replace(/\n/g, "\u21b5"))),
    );
  return parts;
}

let mostTicks = 1;
for (const tree of data.trees)
  for (const visits of Object.values(tree.visits)) mostTicks = Math.max(mostTicks, visits[0]);

// Ticks differ by powers of ten, so does the shade.
const heat = (ticks) => (0.06 + (0.5 * Math.log1p(ticks)) / Math.log1p(mostTicks)).toFixed(3);

function rowElement(row, index) {
  if (row.key !== undefined)
    return make("div", { class: "key", "data-row": index }, make("span", { class: "place" }, "key"), link(hashOf("key", row.key), ...marked(row.key)));
  const tree = data.trees[row.tree];
  if (row.node < 0)
    return make("div", { class: "tree", "data-row": index }, make("span", { class: "place" }, "tree"), link(hashOf("tree", tree.name), ...marked(tree.name)));

  const { node } = row;
  const ticks = ticksOf(tree, node);
  const live = isLive(tree, node);
  const shaded = data.visits && element("shade").checked;
  const states = [];
  if (row.tree === view.tree && node === view.node) states.push("chosen");
  if (!live) states.push("off");
  if (shaded && live && ticks === 0) states.push("missed");
  const made = make("div", { class: states.join(" "), "data-row": index });
  if (shaded && ticks > 0 && !states.includes("chosen")) made.style.background = `rgba(var(--heat), ${heat(ticks)})`;
  if (view.found) made.append(link(placeHash(tree, node), make("span", { class: "place" }, `${tree.name}:${node + 1}`)));
  else made.append(make("span", { class: "number" }, String(node + 1)));
  if (shaded) made.append(make("span", { class: "ticks" }, live || ticks > 0 ? number(ticks) : "off"));
  if (!view.found) {
    const below = tree.end[node] - node - 1;
    const folded = view.folded[row.tree].has(node);
    made.setAttribute("role", "treeitem");
    made.setAttribute("aria-level", tree.depth[node] + 1);
    if (below > 0) made.setAttribute("aria-expanded", String(!folded));
    made.append(
      " ".repeat(2 * tree.depth[node]),
      make("span", { class: "fold" }, below === 0 ? "" : folded ? "\u25b8" : "\u25be"),
      ...nodeParts(tree, node),
    );
    if (folded) made.append(make("span", { class: "folded" }, `  \u2026 ${counted(below, "node")}`));
  } else made.append(...nodeParts(tree, node));
  return made;
}

// Only the rows that are seen are elements, so that a tree of thousands of nodes costs no more than a small one.
function draw() {
  const list = element("list");
  const first = Math.max(0, Math.floor(list.scrollTop / ROW) - 10);
  const last = Math.min(view.rows.length, first + Math.ceil((list.clientHeight || 800) / ROW) + 20);
  const rows = element("rows");
  rows.style.transform = `translateY(${first * ROW}px)`;
  rows.replaceChildren(...view.rows.slice(first, last).map((row, i) => rowElement(row, first + i)));
}

function refill() {
  view.found = wordsOf(view.query).length > 0;
  view.rows = view.found ? find(view.query, view.scope) : outlineRows();
  element("space").style.height = `${view.rows.length * ROW}px`;
  drawTrees();
  drawBar();
  draw();
}

function scrollTo(index) {
  const list = element("list");
  const top = index * ROW;
  if (top < list.scrollTop || top + 2 * ROW > list.scrollTop + list.clientHeight)
    list.scrollTop = Math.max(0, top - list.clientHeight / 3);
}

function unfoldTo(node) {
  const tree = data.trees[view.tree];
  for (let above = tree.parents[node]; above >= 0; above = tree.parents[above]) view.folded[view.tree].delete(above);
}
