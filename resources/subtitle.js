// The bilingual transcript: finished rows (source above, translation below) addressed by decimal
// ids, and the unfinished drafts under them, replaced as a whole.
"use strict";

const list = document.getElementById("list");
const rowsBox = document.getElementById("rows");
const draftsBox = document.getElementById("drafts");
const hintBox = document.getElementById("hint");
const rows = new Map();
const follow = Page.follower(list);
let seekable = false;
let active = null;

const fonts = {
  system: '"Noto Sans CJK SC", "Noto Sans CJK KR", "Noto Sans", "Noto Color Emoji", sans-serif',
  songti: '"Noto Serif CJK SC", "Noto Serif CJK KR", "Noto Serif", "Noto Color Emoji", serif',
  wenkai: '"LXGW WenKai", "LXGW WenKai Screen", "Noto Sans CJK SC", "Noto Color Emoji", sans-serif',
  smiley: '"Smiley Sans", "Noto Sans CJK SC", "Noto Color Emoji", sans-serif',
  kuaile: '"ZCOOL KuaiLe", "Noto Sans CJK SC", "Noto Color Emoji", sans-serif',
};

function showHint() {
  hintBox.hidden = hintBox.textContent === "" || rows.size > 0 || draftsBox.childElementCount > 0;
}

function fill(line, text) {
  line.textContent = String(text);
  line.hidden = line.textContent === "";
}

function makeRow(source, translation, className) {
  const src = Page.el("div", "src");
  const dst = Page.el("div", "dst");
  fill(src, source);
  fill(dst, translation);
  const row = Page.el("div", className, [src, dst]);
  row.classList.toggle("untranslated", dst.hidden);
  return row;
}

function setLook(look) {
  document.body.className = look === "bar" ? "bar" : "panel";
  follow.changed();
}

function setFontSize(size) {
  const points = Number(size);
  if (Number.isFinite(points) && points > 0) document.documentElement.style.fontSize = points + "px";
  follow.changed();
}

function setFont(family) {
  document.documentElement.style.setProperty("--family", fonts[family] || fonts.system);
}

function setColors(translation, original) {
  const apply = (name, value) => {
    if (value && CSS.supports("color", value)) document.documentElement.style.setProperty(name, value);
    else document.documentElement.style.removeProperty(name);
  };
  apply("--dst-custom", translation);
  apply("--src-custom", original);
}

// Rows go into blocks of a hundred: a block out of sight is skipped whole by layout and paint, so
// a class of thousands of rows costs about what its visible rows cost.
const chunkSize = 100;
let lastArrival = -Infinity;
function chunkForNextRow() {
  const last = rowsBox.lastElementChild;
  if (last && last.childElementCount < chunkSize) return last;
  const chunk = Page.el("div", "chunk");
  rowsBox.append(chunk);
  return chunk;
}

function addLine(id, text) {
  const key = String(id);
  const existing = rows.get(key);
  if (existing) {
    setText(key, text);
    return;
  }
  const row = makeRow(text, "", "row");
  row.dataset.id = key;
  // Rows that come in a burst appear at once: an animation for each would keep the page busy.
  const now = performance.now();
  if (now - lastArrival < 400) row.classList.add("still");
  lastArrival = now;
  rows.set(key, row);
  chunkForNextRow().append(row);
  showHint();
  follow.changed();
}

function setText(id, text) {
  const row = rows.get(String(id));
  if (!row) return;
  fill(row.querySelector(".src"), text);
  follow.changed();
}

function setTranslation(id, text) {
  const row = rows.get(String(id));
  if (!row) return;
  const dst = row.querySelector(".dst");
  fill(dst, text);
  row.classList.toggle("untranslated", dst.hidden);
  follow.changed();
}

function setDrafts(pairs) {
  const drafts = (Array.isArray(pairs) ? pairs : []).map(pair =>
    makeRow((pair && pair[0]) ?? "", (pair && pair[1]) ?? "", "row draft"));
  draftsBox.replaceChildren(...drafts);
  showHint();
  follow.changed();
}

function clearAll(hint) {
  rows.clear();
  active = null;
  rowsBox.replaceChildren();
  draftsBox.replaceChildren();
  hintBox.textContent = String(hint === undefined || hint === null ? "" : hint);
  showHint();
  list.scrollTop = 0;
}

function setSeekable(on) {
  seekable = on === true;
  document.body.classList.toggle("seekable", seekable);
}

function setActive(id) {
  const row = rows.get(String(id));
  if (active) active.classList.remove("active");
  active = row || null;
  if (!active) return;
  active.classList.add("active");
  const top = active.offsetTop - list.clientHeight / 3;
  list.scrollTo({ top: Math.max(0, top), behavior: "smooth" });
}

rowsBox.addEventListener("click", event => {
  if (!seekable) return;
  const row = event.target.closest(".row[data-id]");
  if (row && !window.getSelection().toString()) Page.post("line", row.dataset.id);
});
