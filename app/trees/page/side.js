// Around the list: the trees on one side, what is told of a tree, a node or a key on the other

const share = ({ live, visited }) => (live === 0 ? "off" : `${Math.floor((100 * visited) / live)} %`);
const allCounts = data.trees.map(countsOf);
for (const [t, tree] of data.trees.entries()) {
  const counts = allCounts[t];
  const entry = link(hashOf("tree", tree.name), make("span", {}, tree.name), make("span", {}));
  entry.dataset.size = data.visits ? `${number(counts.live)} \u00b7 ${share(counts)}` : number(counts.nodes);
  entry.title = `${counted(counts.nodes, "node")}, ${number(counts.live)} live` +
    (data.visits ? `, ${number(counts.visited)} visited` : "");
  if (counts.live === 0) entry.classList.add("off");
  element("trees").append(entry);
}

// The trees; while something is searched for, those in which it was found.
function drawTrees() {
  const hits = new Map();
  if (view.found)
    for (const row of view.rows)
      if (row.tree !== undefined) hits.set(row.tree, (hits.get(row.tree) ?? 0) + 1);
  [...element("trees").children].forEach((entry, t) => {
    entry.hidden = view.found && !hits.has(t);
    entry.classList.toggle("chosen", t === view.tree);
    entry.lastChild.textContent = view.found ? number(hits.get(t) ?? 0) : entry.dataset.size;
  });
}

function drawBar() {
  const counts = allCounts[view.tree];
  element("heading").textContent = view.found ? `Found: ${view.query}` : data.trees[view.tree].name;
  element("count").textContent = view.found
    ? counted(view.rows.length, "place")
    : `${counted(counts.nodes, "node")}, ${number(counts.live)} live` +
      (data.visits ? `, ${number(counts.visited)} visited` : "");
  element("folding").hidden = view.found;
}

const placeLink = (t, node) => link(placeHash(data.trees[t], node), `${data.trees[t].name}:${node + 1}`);

function listOf(title, items) {
  if (items.length === 0) return [];
  return [make("h3", {}, title), make("ul", {}, ...items.map((item) => make("li", {}, ...[item].flat())))];
}

function aboutKey(key) {
  const { about, users } = data.keys[key];
  const parts = [make("h2", {}, "Key ", make("code", {}, key)), make("p", {}, about)];
  for (const use of ["writes", "erases", "tests", "reads"]) {
    const who = users.filter((user) => user[2] === use);
    parts.push(
      ...listOf(
        `${use} (${who.length})`,
        who.map(([t, node]) => [placeLink(t, node), ` ${typeOf(data.trees[t], node).name}`]),
      ),
    );
  }
  return parts;
}

function aboutNode(tree, node) {
  const type = typeOf(tree, node);
  const parts = [
    make("h2", { class: type.kind }, type.name, labelOf(tree, node) ? ` \u201c${labelOf(tree, node)}\u201d` : ""),
    make("p", { class: "faint" }, `${tree.name}:${node + 1}, ${type.kind === "enters" ? "enters a tree" : type.kind}`),
  ];
  if (type.about) parts.push(make("p", {}, type.about));
  if (tree.enters[node])
    parts.push(
      make("p", {}, "Enters ",
        byName.has(tree.enters[node])
          ? link(hashOf("tree", tree.enters[node]), tree.enters[node])
          : `${tree.enters[node]}, which is no tree here`),
    );
  if (tree.offBy[node] !== undefined)
    parts.push(make("p", {}, "Off by ", placeLink(view.tree, tree.offBy[node]), ` ${typeOf(tree, tree.offBy[node]).name}`));
  else if (!isLive(tree, node)) parts.push(make("p", {}, "Off: nothing live comes to it"));
  const visits = tree.visits[node];
  if (data.visits)
    parts.push(
      make("h3", {}, "Visits"),
      make("p", {}, visits
        ? ["ticks", "success", "failure", "running", "halts"].map((name, i) => `${number(visits[i])} ${name}`).join(", ")
        : "never"),
    );
  const ports = tree.ports[node];
  if (ports.length > 0) {
    const rows = [];
    for (let i = 0; i < ports.length; i += 2)
      rows.push(
        make("tr", {}, make("td", {}, make("code", {}, ports[i])),
          make("td", {}, make("code", { class: "text" }, ...linked(tree, node, ports[i + 1])),
            make("div", { class: "faint" }, (type.ports ?? {})[ports[i]] ?? ""))),
      );
    parts.push(make("h3", {}, "Ports"), make("table", {}, ...rows));
  }
  parts.push(...listOf("Keys", (tree.keys.get(node) ?? []).map(([key, use]) => [`${use} `, link(hashOf("key", key), key)])));
  const above = [];
  for (let at = tree.parents[node]; at >= 0; at = tree.parents[at])
    above.push([link(placeHash(tree, at), String(at + 1)), ` ${typeOf(tree, at).name} `,
      make("span", { class: "label" }, labelOf(tree, at))]);
  parts.push(...listOf("Stands below", above));
  return parts;
}

function aboutTree(tree) {
  const counts = allCounts[byName.get(tree.name)];
  const entered = [...new Set(Object.values(tree.enters))].sort();
  const keys = new Map();
  for (const uses of tree.keys.values())
    for (const [key, use] of uses) {
      if (!keys.has(key)) keys.set(key, new Set());
      keys.get(key).add(use);
    }
  const parts = [
    make("h2", {}, tree.name),
    make("p", {}, !tree.written ? "Not written" : `${counted(counts.nodes, "node")}, ${number(counts.live)} live` +
      (data.visits ? `, ${number(counts.visited)} visited` : "")),
  ];
  if (!tree.entered) parts.push(make("p", {}, "Off: no live node enters it"));
  parts.push(
    ...listOf(`Entered by (${tree.callers.length})`, tree.callers.map(([t, node]) => placeLink(t, node))),
    ...listOf(`Enters (${entered.length})`, entered.map((name) => (byName.has(name) ? link(hashOf("tree", name), name) : name))),
    ...listOf(`Keys (${keys.size})`, [...keys.keys()].sort().map((key) => [
      link(hashOf("key", key), key),
      make("span", { class: "faint" }, ` ${[...keys.get(key)].join(", ")}`),
    ])),
  );
  return parts;
}

let told = ""; // what the side tells about

function drawAbout() {
  const subject = JSON.stringify([view.key, view.tree, view.node]);
  if (subject === told) return;
  told = subject;
  const tree = data.trees[view.tree];
  const about = element("about");
  about.replaceChildren(
    ...(view.key !== null ? aboutKey(view.key) : view.node >= 0 ? aboutNode(tree, view.node) : aboutTree(tree)),
  );
  about.scrollTop = 0;
}
