"use strict";

// Stands behind the script of a page, does what a user does, and leaves what could be seen as the body's text.
{
  const seen = {};
  const moved = () => new Promise((resolve) => addEventListener("hashchange", resolve, { once: true }));
  const rows = () => [...element("rows").children].map((row) => row.textContent);
  const lines = () => [...element("rows").querySelectorAll(".number")].map((at) => Number(at.textContent));
  const shown = () => [...element("trees").children].filter((entry) => !entry.hidden).map((entry) => entry.firstChild.textContent);
  const about = () => element("about").innerText ?? element("about").textContent;
  const linksAbout = () => [...element("about").querySelectorAll("a")].map((at) => at.textContent);
  const heading = () => element("heading").textContent;
  const row = (line) => [...element("rows").children].find((at) => at.querySelector(".number")?.textContent === String(line));
  const press = (key) => element("list").dispatchEvent(new KeyboardEvent("keydown", { key, bubbles: true }));
  const type = (text, scope = "all") => {
    element("scope").value = scope;
    element("query").value = text;
    element("query").dispatchEvent(new Event("input"));
  };
  const goTo = async (hash) => {
    const done = moved();
    location.hash = hash;
    await done;
  };

  const steps = {
    async robot() {
      seen.opened = heading();
      seen.summary = element("summary").textContent;
      seen.trees = shown().length;
      seen.allNodes = data.trees.reduce((sum, tree) => sum + tree.types.length, 0);
      seen.rowsOfFirst = view.rows.length;
      seen.elementsOfFirst = rows().length;
      element("list").scrollTop = ROW * (view.rows.length - 30);
      draw();
      seen.lastRow = rows().at(-1);
      // The first search makes its texts; the second one finds them.
      type("SaySomething", "types");
      seen.foundTypes = view.rows.length;
      seen.treesOfTypes = shown().sort();
      seen.elementsFound = rows().length;
      const before = performance.now();
      type("robot zzz");
      seen.milliseconds = performance.now() - before;
      type("Escape");
      seen.foundFirst = rows()[0];
      await goTo("#tree/Escape");
      seen.afterLink = heading();
      seen.queryAfterLink = element("query").value;
      seen.callers = linksAbout().filter((text) => text.includes(":"));
      await goTo(hashOf("key", "task_state"));
      seen.users = linksAbout();
      seen.stillShown = heading();
    },
    async live() {
      seen.opened = heading();
      seen.visitsShown = getComputedStyle(document.querySelector(".with-visits")).display !== "none";
      seen.rows = rows();
      seen.off = [...element("rows").children].map((at) => at.classList.contains("off"));
      seen.missed = [...element("rows").children].map((at) => at.classList.contains("missed"));
      seen.shades = [...element("rows").children].map((at) => at.style.background !== "");
      seen.entries = [...element("trees").children].map((at) => at.textContent);
      element("show-off").click();
      seen.liveRows = lines();
      element("show-off").click();
      row(2).querySelector(".fold").click();
      seen.folded = lines();
      element("fold").click();
      seen.foldedAll = rows();
      element("one-level").click();
      seen.oneLevel = lines();
      // An address opens what is folded above it.
      await goTo("#tree/RobotNode/4");
      seen.openedByAddress = lines();
      seen.chosen = document.querySelector("#rows .chosen").textContent;
      seen.aboutOff = about();
      press("ArrowDown");
      seen.afterDown = document.querySelector("#rows .chosen").textContent;
      seen.visitsOfNode = about();
      let done = moved();
      press("Enter");
      await done;
      seen.entered = heading();
      seen.enteredBy = linksAbout();
      seen.linkedKey = [...element("rows").querySelectorAll("a")].map((at) => at.getAttribute("href"));
      type("  ALWAYS   succ ");
      seen.words = rows();
      seen.marks = [...element("rows").querySelectorAll("mark")].map((at) => at.textContent).slice(0, 2);
      type("nothing has this");
      seen.none = element("count").textContent;
      type("");
      seen.back = heading();
      type("y", "keys");
      seen.byKey = rows();
      done = moved();
      element("rows").children[1].click();
      await done;
      seen.afterClick = document.querySelector("#rows .chosen").textContent;
    },
    async odd() {
      seen.text = rows();
      seen.elements = element("rows").children[0].querySelectorAll("tune").length;
    },
  };
  addEventListener("error", (event) => (seen.fault = event.message));
  steps[WHAT]()
    .catch((fault) => (seen.fault = String(fault)))
    .then(() => {
      document.head.remove();
      document.body.replaceChildren(document.createTextNode(`SEEN${JSON.stringify(seen)}SEEN`));
    });
}
