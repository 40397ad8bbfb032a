// Moving about

function choose(node) {
  view.node = node;
  view.key = null;
  draw();
  drawAbout();
}

// #tree/NAME, #tree/NAME/LINE, #key/NAME, #find/SCOPE/TEXT: all that is looked at has an address.
function follow() {
  const [what, first, second] = location.hash.slice(1).split("/").map(decodeURIComponent);
  if (what === "find") {
    view.scope = element("scope").querySelector(`option[value="${CSS.escape(first)}"]`) ? first : "all";
    view.query = second ?? "";
  } else if (what === "key" && Object.hasOwn(data.keys, first)) {
    view.key = first;
    drawAbout();
    return;
  } else {
    const known = what === "tree" && byName.has(first);
    view.tree = known ? byName.get(first) : byName.get(data.opened) ?? 0;
    view.node = known && second > 0 && second <= data.trees[view.tree].types.length ? second - 1 : -1;
    view.key = null;
    view.query = "";
    if (view.node >= 0) {
      unfoldTo(view.node);
      // What is asked for by its address is shown, off or not.
      if (!isLive(data.trees[view.tree], view.node)) element("show-off").checked = true;
    } else element("list").scrollTop = 0;
  }
  if (element("query").value.trim() !== view.query) element("query").value = view.query;
  element("scope").value = view.scope;
  refill();
  if (view.node >= 0 && !view.found) {
    scrollTo(view.rows.findIndex((row) => row.node === view.node));
    draw();
  }
  drawAbout();
}

function search() {
  const query = element("query").value.trim();
  const wasFound = view.found;
  const hash = query ? hashOf("find", element("scope").value, query) : hashOf("tree", data.trees[view.tree].name);
  element("list").scrollTop = 0;
  // Letters that are typed make no steps of their own for the way back.
  if (wasFound && query) history.replaceState(null, "", hash);
  else history.pushState(null, "", hash);
  follow();
}

function foldTo(depth) {
  const tree = data.trees[view.tree];
  const folded = view.folded[view.tree];
  folded.clear();
  for (let i = 0; i < tree.types.length; ++i) if (tree.depth[i] >= depth && tree.end[i] > i + 1) folded.add(i);
  refill();
}

// One level more than the least deep folded node shows.
function openLevel() {
  const tree = data.trees[view.tree];
  const least = Math.min(...[...view.folded[view.tree]].map((node) => tree.depth[node]));
  if (Number.isFinite(least)) foldTo(least + 1);
}

function toggle(node) {
  const folded = view.folded[view.tree];
  if (!folded.delete(node)) folded.add(node);
  refill();
}

element("query").addEventListener("input", search);
element("scope").addEventListener("change", () => element("query").value.trim() && search());
element("show-off").addEventListener("change", refill);
element("shade").addEventListener("change", draw);
element("fold").addEventListener("click", () => foldTo(0));
element("unfold").addEventListener("click", () => foldTo(Infinity));
element("one-level").addEventListener("click", openLevel);
element("list").addEventListener("scroll", draw);
addEventListener("resize", draw);
addEventListener("hashchange", follow);

element("rows").addEventListener("click", (event) => {
  const row = view.rows[event.target.closest("[data-row]")?.dataset.row];
  if (!row || event.target.closest("a")) return;
  if (view.found) {
    location.hash = row.key !== undefined ? hashOf("key", row.key)
      : row.node < 0 ? hashOf("tree", data.trees[row.tree].name) : placeHash(data.trees[row.tree], row.node);
  } else if (event.target.closest(".fold")) toggle(row.node);
  else choose(row.node);
});

function step(to) {
  const row = view.rows[Math.min(Math.max(to, 0), view.rows.length - 1)];
  if (!row) return;
  scrollTo(view.rows.indexOf(row));
  choose(row.node);
}

element("list").addEventListener("keydown", (event) => {
  if (view.found || event.ctrlKey || event.metaKey || event.altKey) return;
  const tree = data.trees[view.tree];
  const at = view.rows.findIndex((row) => row.node === view.node);
  const folded = view.folded[view.tree].has(view.node);
  const below = view.node >= 0 && tree.end[view.node] > view.node + 1;
  const keys = {
    ArrowDown: () => step(at + 1),
    ArrowUp: () => step(at - 1),
    ArrowLeft: () =>
      below && !folded ? toggle(view.node) : step(view.rows.findIndex((row) => row.node === tree.parents[view.node])),
    ArrowRight: () => (below && folded ? toggle(view.node) : step(at + 1)),
    Enter: () => byName.has(tree.enters[view.node]) && (location.hash = hashOf("tree", tree.enters[view.node])),
  };
  if (!Object.hasOwn(keys, event.key)) return;
  keys[event.key]();
  event.preventDefault();
});
addEventListener("keydown", (event) => {
  if (event.key !== "/" || event.target.matches("input, select")) return;
  element("query").focus();
  element("query").select();
  event.preventDefault();
});

document.body.classList.toggle("visits", data.visits);
{
  const sum = (field) => allCounts.reduce((total, counts) => total + counts[field], 0);
  element("summary").textContent =
    `${counted(data.trees.length, "tree")}, ${counted(sum("nodes"), "node")}, ${number(sum("live"))} live` +
    (data.visits ? `, ${share({ live: sum("live"), visited: sum("visited") })} visited` : "") +
    ` \u00b7 ${data.version}`;
}
follow();
