"""Ends with a sentence unless the page named first is valid HTML, holds the words that follow, and
needs nothing beside itself; prints how many charts it has, and for each chart with a key the series
and how many points of each are drawn."""
import collections
import re
import sys

import html5lib

text = open(sys.argv[1], encoding="utf-8").read()
page = html5lib.HTMLParser(strict=True, namespaceHTMLElements=False).parse(text)

ids = collections.Counter(element.get("id") for element in page.iter() if element.get("id"))
assert max(ids.values(), default=1) == 1, "an id twice"
assert set(re.findall(r"""(?:href=['"]#|url\(#)([^'")]+)""", text)) <= set(ids), "a dead reference"

outside = re.sub(r'xmlns(:xlink)?="[^"]*"', "", text)
for loaded in ("<script", "<link", "<img", "src=", "@import", "http://", "https://"):
    assert loaded not in outside, loaded

words = "".join(page.itertext())
for word in sys.argv[2:]:
    assert word in words, word

SVG = "{http://www.w3.org/2000/svg}"
charts = list(page.iter(SVG + "svg"))
print(len(charts), "charts")
for chart in charts:
    assert chart.findtext(SVG + "title"), "a chart without a title"
    # One of the marks is the key's.
    marks = {group.get("class"): len(group.findall(SVG + "g")) - 1
             for group in chart.findall(SVG + "g") if group.get("class")}
    if any(marks.values()):
        print(", ".join(f"{name} {count}" for name, count in marks.items() if count))
