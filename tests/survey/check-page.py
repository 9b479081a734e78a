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

print(sum(str(element.tag).endswith("svg") for element in page.iter()), "charts")
for chart in (element for element in page.iter() if str(element.tag).endswith("svg")):
    series = []
    for plot in chart.iter():
        name = "".join(plot.itertext()).strip()
        if "_plot_" in (plot.get("id") or "") and name:
            # One of the points is the key's.
            points = sum(str(element.tag).endswith("use") for element in plot.iter()) - 1
            series.append(f"{name} {points}")
    if series:
        print(", ".join(series))
