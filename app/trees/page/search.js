// Search

const searchTexts = new Map(); // scope -> a text in lower case for each node of each tree

function nodeText(tree, node, scope) {
  const ports = tree.ports[node];
  const type = typeOf(tree, node).name;
  switch (scope) {
    case "types":
      return type;
    case "labels":
      return labelOf(tree, node);
    case "keys":
      return (tree.keys.get(node) ?? []).map(([key]) => key).join("\n");
    case "messages":
      return ports.filter((_, i) => i % 2 === 1 && ports[i - 1] === "message").join("\n");
    case "ports":
      return ports.reduce((text, part, i) => text + part + (i % 2 ? '"\n' : '="'), "");
    default:
      return `${type}\n${labelOf(tree, node)}\n${nodeText(tree, node, "ports")}`;
  }
}

function textsOf(scope) {
  if (!searchTexts.has(scope))
    searchTexts.set(
      scope,
      data.trees.map((tree) => tree.types.map((_, node) => nodeText(tree, node, scope).toLowerCase())),
    );
  return searchTexts.get(scope);
}

const wordsOf = (query) => query.toLowerCase().split(/\s+/).filter(Boolean);

// Trees and keys whose names have all words, and nodes that have them, tree by tree.
function find(query, scope) {
  const words = wordsOf(query);
  const fits = (text) => words.every((word) => text.includes(word));
  const rows = [];
  if (scope === "all")
    data.trees.forEach((tree, t) => fits(tree.name.toLowerCase()) && rows.push({ tree: t, node: -1 }));
  if (scope === "all" || scope === "keys")
    for (const key of Object.keys(data.keys)) if (fits(key.toLowerCase())) rows.push({ key });
  const hideOff = !element("show-off").checked;
  textsOf(scope).forEach((texts, t) =>
    texts.forEach((text, node) => {
      if (text && fits(text) && !(hideOff && !isLive(data.trees[t], node))) rows.push({ tree: t, node });
    }),
  );
  return rows;
}
