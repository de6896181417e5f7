// The AI feed: cards, notes, dated events and the chat in one stream that follows the class, with
// the running summary and the vocabulary above it, each replaced as a whole.
"use strict";

const stream = document.getElementById("stream");
const emptyNote = document.getElementById("empty");
const summaryBox = document.getElementById("summary");
const vocabBox = document.getElementById("vocab");
const follow = Page.follower(stream);
const events = new Map();
let typing = null;

const cardKinds = { "可以这样回答": "answer", "考试重点": "exam", "课堂重点": "key" };
const text = value => (value === undefined || value === null ? "" : String(value));

function append(node) {
  emptyNote.remove();
  if (typing && typing.isConnected) stream.insertBefore(node, typing);
  else stream.append(node);
  follow.changed();
  return node;
}

function addCard(kind, body, stamp) {
  const card = Page.el("article", "card " + (cardKinds[text(kind)] || "other"), [
    Page.el("header", "", [Page.el("span", "kind", text(kind)), Page.el("time", "", text(stamp))]),
    Page.el("p", "text", text(body)),
  ]);
  append(card);
}

function addNote(body) {
  append(Page.el("p", "note", text(body)));
}

function addYou(body) {
  append(Page.el("div", "bubble you", [Page.el("p", "text", text(body))]));
}

function showTyping() {
  if (typing && typing.isConnected) return;
  typing = Page.el("div", "bubble ai typing", [Page.el("span"), Page.el("span"), Page.el("span")]);
  typing.setAttribute("aria-label", "正在回复");
  emptyNote.remove();
  stream.append(typing);
  follow.changed();
}

function addAI(name, body) {
  if (typing) typing.remove();
  typing = null;
  append(Page.el("div", "bubble ai", [Page.el("span", "name", text(name)), Page.el("p", "text", text(body))]));
}

function setSummary(body, stamp, final) {
  const final_ = text(final) === "1";
  summaryBox.querySelector(".text").textContent = text(body);
  summaryBox.querySelector("time").textContent = text(stamp);
  summaryBox.querySelector(".badge").hidden = !final_;
  summaryBox.classList.toggle("final", final_);
  summaryBox.hidden = text(body) === "";
}

function setVocab(rows) {
  const terms = (Array.isArray(rows) ? rows : []).map(row => {
    const [term, meaning, note] = Array.isArray(row) ? row : [];
    return Page.el("li", "", [
      Page.el("span", "term", text(term)),
      Page.el("span", "meaning", text(meaning)),
      text(note) ? Page.el("span", "tip", text(note)) : null,
    ]);
  });
  vocabBox.querySelector(".terms").replaceChildren(...terms);
  vocabBox.querySelector(".count").textContent = String(terms.length);
  vocabBox.hidden = terms.length === 0;
}

function dateTile(date) {
  const match = /^(\d{4})-(\d{2})-(\d{2})$/.exec(text(date));
  const month = match ? Number(match[2]) + "月" : "";
  const day = match ? String(Number(match[3])) : "📅";
  return Page.el("div", "tile", [Page.el("span", "month", month), Page.el("span", "day", day)]);
}

function addEvent(id, title, date, time, note) {
  const key = text(id);
  const button = Page.el("button", "add", "加入日历");
  button.type = "button";
  button.addEventListener("click", () => Page.post("calendar", key));
  const when = [text(date), text(time)].filter(Boolean).join(" ");
  const card = Page.el("article", "event", [
    dateTile(date),
    Page.el("div", "body", [
      Page.el("p", "title", text(title)),
      Page.el("p", "when", when),
      text(note) ? Page.el("p", "tip", text(note)) : null,
    ]),
    button,
  ]);
  card.dataset.id = key;
  events.set(key, card);
  append(card);
}

function markEventAdded(id) {
  const card = events.get(text(id));
  if (!card) return;
  const button = card.querySelector("button.add");
  button.textContent = "已加入 ✓";
  button.disabled = true;
  card.classList.add("added");
}
