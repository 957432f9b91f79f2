"""Makes pages for a browser of the documents for users, with cmark-gfm:

    pages.py CMARK_GFM SOURCE TARGET DOCUMENT…

Each DOCUMENT, named as below the folder SOURCE, becomes a page at the same place below TARGET. Links among them lead from
page to page, to the headings, too. The pictures are not copied.
"""

import html
import re
import subprocess
import sys
from pathlib import Path

PAGE = """<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width">
<title>{title} - Vantor</title>
<style>
:root {{ color-scheme: light dark; }}
body {{ max-width: 52rem; margin: 2rem auto; padding: 0 1rem; font: 1rem/1.5 sans-serif; }}
h1, h2, h3 {{ line-height: 1.2; margin-top: 2rem; }}
img {{ max-width: 100%; }}
table {{ border-collapse: collapse; margin: 1rem 0; }}
th, td {{ border: 1px solid #8888; padding: .3rem .6rem; text-align: left; vertical-align: top; }}
code, pre {{ font-size: .95em; }}
pre {{ border-left: 3px solid #8888; padding: .2rem .8rem; overflow-x: auto; }}
</style>
</head>
<body>
{body}</body>
</html>
"""


def text_of(markup):
    return html.unescape(re.sub(r"<[^>]*>", "", markup))


def with_anchors(body):
    """Names the headings, so that links can lead to them: "Save as" is "save-as", a second one "save-as-1"."""
    count = {}

    def heading(match):
        name = re.sub(r"[^\w\- ]", "", text_of(match[2]).lower()).replace(" ", "-")
        seen = count[name] = count.get(name, -1) + 1
        return f'<h{match[1]} id="{name}{f"-{seen}" if seen else ""}">{match[2]}</h{match[1]}>'

    return re.sub(r"<h(\d)>(.*?)</h\1>", heading, body)


def with_links_to_pages(body, document, documents):
    """Makes links to documents lead to their pages. Links to other files stay."""
    here = document.parent

    def link(match):
        leads_to_page = (here / match[1]).resolve() in documents
        return f'href="{match[1].removesuffix(".md") + ".html" if leads_to_page else match[1]}{match[2]}"'

    return re.sub(r'href="([^"#:]+)((?:#[^"]*)?)"', link, body)


def main():
    cmark, source, target = sys.argv[1], Path(sys.argv[2]).resolve(), Path(sys.argv[3])
    documents = [source / name for name in sys.argv[4:]]
    for document in documents:
        body = subprocess.run([cmark, "--extension", "table", str(document)], check=True, stdout=subprocess.PIPE,
                              encoding="utf-8").stdout
        body = with_links_to_pages(with_anchors(body), document, documents)
        title = re.search(r"<h1[^>]*>(.*?)</h1>", body)[1]
        page = target / document.relative_to(source).with_suffix(".html")
        page.parent.mkdir(parents=True, exist_ok=True)
        page.write_text(PAGE.format(title=title, body=body), encoding="utf-8")


if __name__ == "__main__":
    main()
