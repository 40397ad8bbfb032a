"use strict";

// What there is

const data = JSON.parse(document.getElementById("data").textContent);
const byName = new Map(data.trees.map((tree, index) => [tree.name, index]));

// Of each tree: depth of nodes, where each node's branch ends, who enters it, and which keys each node uses.
for (const tree of data.trees) {
  const size = tree.types.length;
  tree.depth = new Uint16Array(size);
  tree.end = new Uint32Array(size);
  tree.callers = [];
  tree.keys = new Map();
  for (let i = 0; i < size; ++i) tree.depth[i] = i === 0 ? 0 : tree.depth[tree.parents[i]] + 1;
  for (let i = size - 1; i >= 0; --i) {
    tree.end[i] = Math.max(tree.end[i], i + 1);
    const parent = tree.parents[i];
    if (parent >= 0) tree.end[parent] = Math.max(tree.end[parent], tree.end[i]);
  }
}
data.trees.forEach((tree, t) => {
  for (const [node, name] of Object.entries(tree.enters))
    if (byName.has(name)) data.trees[byName.get(name)].callers.push([t, Number(node)]);
});
for (const [key, { users }] of Object.entries(data.keys))
  for (const [t, node, use] of users) {
    const keys = data.trees[t].keys;
    if (!keys.has(node)) keys.set(node, []);
    keys.get(node).push([key, use]);
  }

const typeOf = (tree, node) => data.types[tree.types[node]];
const isLive = (tree, node) => tree.live[node] === "1";
const ticksOf = (tree, node) => (tree.visits[node] ? tree.visits[node][0] : 0);
const labelOf = (tree, node) => tree.labels[node] ?? "";
const hashOf = (...parts) => "#" + parts.map(encodeURIComponent).join("/");
const placeHash = (tree, node) => hashOf("tree", tree.name, node + 1);

function countsOf(tree) {
  let live = 0;
  let visited = 0;
  for (let i = 0; i < tree.types.length; ++i)
    if (isLive(tree, i)) {
      ++live;
      if (ticksOf(tree, i) > 0) ++visited;
    }
  return { nodes: tree.types.length, live, visited };
}

// What is looked at

const ROW = 20; // pixels, as in the style sheet
const element = (id) => document.getElementById(id);
const view = {
  tree: byName.get(data.opened) ?? 0,
  node: -1, // the chosen one; -1: none
  key: null, // the key that the side tells about
  query: "",
  scope: "all",
  folded: data.trees.map(() => new Set()),
  rows: [], // nodes of the tree, or what was found
  found: false, // rows are what was found
};

// Makes an element; children are elements or texts.
function make(tag, attributes, ...children) {
  const made = document.createElement(tag);
  for (const [name, value] of Object.entries(attributes ?? {}))
    if (value !== undefined && value !== "") made.setAttribute(name, value);
  made.append(...children);
  return made;
}
const link = (hash, ...children) => make("a", { href: hash }, ...children);
const number = (count) => count.toLocaleString("en");
const counted = (count, what) => `${number(count)} ${what}${count === 1 ? "" : "s"}`;
