"""The HTML output in a real browser (headless Chromium, no network): each data cell is found
under the header cells a reader sees, the `headers` attributes name the same headers, leaf
headers stay on one line, and a wide table scrolls in its own box, not the page."""
import html
import json
import os
import re
import shutil
import subprocess

import pytest

from quilt_json import SHOWCASE_RUNS, json_output, run_quilt

CHROMIUM = os.environ.get("QUILT_CHROMIUM") or shutil.which("chromium") or shutil.which("chromium-browser")
if not CHROMIUM:
    pytest.skip("Chromium is not installed (Debian: chromium)", allow_module_level=True)

SCOPES = {("head", "col"), ("head", "colgroup"), ("body", "row"), ("body", "rowgroup")}
# Narrower than the widest showcase table, so that one has to scroll.
WINDOW = (700, 900)

# Run in the page after it is laid out: for every data cell, the header cells whose boxes lie
# above it (across its centre) and to its left (across its middle), its own text, letters and
# note marks, and the texts of the headers its `headers` attribute names.
PROBE = r"""
<script>
(() => {
  const box = (element) => element.getBoundingClientRect();
  const text = (element) => element ? element.textContent : null;
  const tables = [...document.querySelectorAll("table")].map((table) => {
    const heads = [...table.querySelectorAll("thead th")].map((th) => [th, box(th)]);
    const sides = [...table.querySelectorAll("tbody th")].map((th) => [th, box(th)]);
    const cells = [...table.querySelectorAll("tbody td")].map((td) => {
      const r = box(td), x = (r.left + r.right) / 2, y = (r.top + r.bottom) / 2;
      return {
        above: heads.filter(([, h]) => h.left <= x && x <= h.right && h.bottom <= r.top + 0.5)
                    .sort((a, b) => a[1].top - b[1].top).map(([th]) => th.textContent),
        beside: sides.filter(([, h]) => h.top <= y && y <= h.bottom && h.right <= r.left + 0.5)
                     .sort((a, b) => a[1].left - b[1].left).map(([th]) => th.textContent),
        own: [...td.childNodes].filter((node) => node.nodeType === 3).map((node) => node.textContent).join(""),
        markers: text(td.querySelector(".marker")) || "",
        notes: text(td.querySelector("sup")) || "",
        headers: (td.getAttribute("headers") || "").split(/\s+/).filter(Boolean)
                   .map((id) => text(document.getElementById(id))),
      };
    });
    const lines = [...table.querySelectorAll("th[scope=col], th[scope=row]")].map((th) => {
      const range = document.createRange();
      range.selectNodeContents(th);
      return [th.textContent, new Set([...range.getClientRects()].map((q) => Math.round(q.top))).size];
    });
    const scopes = [...table.querySelectorAll("th")].map((th) =>
        [th.closest("thead") ? "head" : "body", th.getAttribute("scope"), th.id !== "" || th.textContent === ""]);
    const scroller = table.parentElement;
    return {layer: text(table.querySelector("caption .layer")) || "", cells, lines, scopes,
            scrolls: scroller.scrollWidth > scroller.clientWidth};
  });
  const result = document.createElement("pre");
  result.id = "dom-check";
  result.textContent = JSON.stringify({tables, page: document.documentElement.scrollWidth, view: innerWidth});
  document.body.appendChild(result);
})();
</script>
"""


def browse(page, tmp_path):
    """Loads `page` in headless Chromium and returns what PROBE found."""
    probed = tmp_path / "page.html"
    probed.write_bytes(page.replace(b"</body>", PROBE.encode() + b"</body>"))
    flags = ["--headless", "--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run",
             "--disable-background-networking", "--disable-component-update", "--disable-sync",
             f"--user-data-dir={tmp_path / 'profile'}", f"--window-size={WINDOW[0]},{WINDOW[1]}"]
    done = subprocess.run([CHROMIUM, *flags, "--dump-dom", probed.as_uri()], capture_output=True, timeout=180)
    found = re.search(rb'<pre id="dom-check">(.*?)</pre>', done.stdout, re.S)
    assert found, done.stderr.decode(errors="replace")[-2000:]
    return json.loads(html.unescape(found.group(1).decode()))


@pytest.mark.parametrize("args", SHOWCASE_RUNS, ids=["showcase", "waves"])
def test_cells_sit_under_the_headers_a_reader_sees(args, tmp_path):
    seen = browse(run_quilt([*args, "-f", "html"]), tmp_path)
    pages = iter(seen["tables"])
    wide = 0
    for table, _ in json_output(args):
        if table["type"] != "table":
            continue
        for layer in dict.fromkeys(tuple(cell["layer"]) for cell in table["cells"]):
            page = next(pages)
            assert page["layer"] == " / ".join(layer)
            expected = {(tuple(l for l in cell["row"] if l), tuple(l for l in cell["column"] if l)): cell
                        for cell in table["cells"] if tuple(cell["layer"]) == layer}
            shown = {}
            for cell in page["cells"]:
                if cell["own"] or cell["markers"] or cell["notes"]:
                    key = (tuple(l for l in cell["beside"] if l), tuple(l for l in cell["above"] if l))
                    assert key not in shown, key
                    shown[key] = cell
            assert shown.keys() == expected.keys(), table["title"]
            for key, cell in expected.items():
                assert shown[key]["own"] == cell["text"], key
                assert shown[key]["markers"] == " ".join(cell["markers"]), key
                assert shown[key]["notes"] == ",".join(cell["notes"]), key
                # The headers attribute names what the eye finds: column headers, then row headers.
                assert [h for h in shown[key]["headers"] if h] == list(key[1] + key[0]), key
            for place, scope, has_id in page["scopes"]:
                assert (place, scope) in SCOPES and has_id, (table["title"], place, scope)
            assert [label for label, lines in page["lines"] if lines > 1] == [], table["title"]
            wide += page["scrolls"]
    assert next(pages, None) is None
    # Tables wider than the window scroll in their own box; the page itself never does.
    assert seen["page"] <= seen["view"]
    if args == SHOWCASE_RUNS[0]:
        assert wide > 0
