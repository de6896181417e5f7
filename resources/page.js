// What both pages share: the channel back to the application, element building (text always as
// text, never as markup), light and dark, and a list that stays at its bottom unless the reader
// scrolled up.
"use strict";

const Page = (() => {
  let native = null;
  const waiting = [];
  if (typeof qt !== "undefined" && typeof QWebChannel !== "undefined") {
    new QWebChannel(qt.webChannelTransport, channel => {
      native = channel.objects.native;
      waiting.splice(0).forEach(([name, body]) => native.post(name, body));
    });
  }

  function post(name, body) {
    if (native) native.post(name, body);
    else waiting.push([name, body]);
  }

  // el("div", "row", "text") or el("div", "row", [children]).
  function el(tag, className, content) {
    const node = document.createElement(tag);
    if (className) node.className = className;
    if (Array.isArray(content)) content.forEach(child => child && node.append(child));
    else if (content !== undefined && content !== null) node.textContent = String(content);
    return node;
  }

  const darkQuery = window.matchMedia("(prefers-color-scheme: dark)");
  let theme = "";
  function applyTheme() {
    const dark = theme === "dark" || (theme === "" && darkQuery.matches);
    document.documentElement.classList.toggle("dark", dark);
  }
  darkQuery.addEventListener("change", applyTheme);
  applyTheme();

  function setTheme(value) {
    theme = value === "light" || value === "dark" ? value : "";
    applyTheme();
  }

  // Keeps `scroller` at its bottom while the reader is there; scrolling up lets them read in
  // peace until they come back down.
  function follower(scroller) {
    let stick = true;
    let lastTop = scroller.scrollTop;
    const slack = 48;
    const atBottom = () => scroller.scrollHeight - scroller.scrollTop - scroller.clientHeight <= slack;
    scroller.addEventListener("scroll", () => {
      if (scroller.scrollTop < lastTop - 2 && !atBottom()) stick = false;
      else if (atBottom()) stick = true;
      lastTop = scroller.scrollTop;
    }, { passive: true });
    let queued = false;
    let lastScroll = -Infinity;
    return {
      // Call after every change of the content.
      changed() {
        if (!stick || queued) return;
        queued = true;
        requestAnimationFrame(() => {
          queued = false;
          // Smooth while text comes at reading pace; a burst jumps, so the page isn't animating
          // all the time.
          const now = performance.now();
          const far = scroller.scrollHeight - scroller.clientHeight - scroller.scrollTop > scroller.clientHeight;
          const burst = now - lastScroll < 400;
          lastScroll = now;
          scroller.scrollTo({ top: scroller.scrollHeight, behavior: far || burst ? "auto" : "smooth" });
        });
      },
      stuck: () => stick,
    };
  }

  return { post, el, setTheme, follower };
})();

function setTheme(theme) { Page.setTheme(String(theme)); }
