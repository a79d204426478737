"""The demo's words and figures: a PDF, a docx, Markdown, a table.

SPDX-License-Identifier: GPL-3.0-or-later
"""
import io
import zipfile
from xml.sax.saxutils import escape

BRIEF = """# Northlight

A film of four minutes about one night in the north. No dialogue; a voice at the beginning and at the end.

## What we need

- [x] Storyboard for scene 4
- [x] Test render of shot 04, 20 frames
- [ ] Voice-over, second take, slower
- [ ] Grade: keep the greens below the faces

## Notes from the last review

The aurora moves too fast in shot 02. Let it breathe: twice as slow, and hold the last frame for a second.
The opening over the lake stays as it is.

| Shot | Length | State |
| --- | --- | --- |
| 01 | 6 s | done |
| 02 | 5 s | new render |
| 04 | 20 frames | test |
"""

README = """# orbit-site

The pages of orbit. `npm run dev` starts them; pictures come out of `scripts/hero.py` and are saved in the library.

1. Heroes are 1600 by 1000.
2. Screenshots are taken at 1440 by 900.
3. The logo is an SVG and nothing else.
"""

FIELD_NOTES = """# Field notes, the island

Day 3. Wind from the west all morning, then none. We walked from the harbour to the northern ridge and counted
forty-one terns on the sand. The light after the rain was worth the climb.

Day 4. Fog. The drone stayed in its box until noon. Two good passes over the bay afterwards.
"""


def measurements(rng):
    rows = ["day,hour,temperature,wind,terns"]
    for day in range(1, 15):
        for hour in (6, 12, 18):
            rows.append(f"{day},{hour},{8 + 6 * rng.random() + (hour == 12) * 4:.1f},{rng.random() * 14:.1f},"
                        f"{rng.integers(3, 60)}")
    return "\n".join(rows) + "\n"


def pdf(title, pages):
    """A PDF of the given pages, each a list of (size, line); text can be searched and selected."""
    objects = ["<< /Type /Catalog /Pages 2 0 R >>", None,
               "<< /Type /Font /Subtype /Type1 /BaseFont /Helvetica /Encoding /WinAnsiEncoding >>",
               "<< /Type /Font /Subtype /Type1 /BaseFont /Helvetica-Bold /Encoding /WinAnsiEncoding >>"]
    kids = []
    for number, lines in enumerate(pages, 1):
        out = ["0.95 0.62 0.26 rg 56 770 484 6 re f", "0.13 0.12 0.16 rg BT"]
        y = 724
        for size, words in lines:
            safe = words.replace("\\", "\\\\").replace("(", "\\(").replace(")", "\\)")
            out.append(f"/{'B' if size > 13 else 'R'} {size} Tf 1 0 0 1 56 {y} Tm ({safe}) Tj")
            y -= size * 1.6 + (8 if size > 13 else 0)
        out.append(f"/R 9 Tf 1 0 0 1 56 40 Tm ({title}, page {number}) Tj ET")
        stream = "\n".join(out)
        objects.append(f"<< /Length {len(stream)} >>\nstream\n{stream}\nendstream")
        objects.append(f"<< /Type /Page /Parent 2 0 R /MediaBox [0 0 595 842] /Contents {len(objects)} 0 R "
                       "/Resources << /Font << /R 3 0 R /B 4 0 R >> >> >>")
        kids.append(f"{len(objects)} 0 R")
    objects[1] = f"<< /Type /Pages /Kids [{' '.join(kids)}] /Count {len(kids)} >>"
    out, places = "%PDF-1.4\n", []
    for number, body in enumerate(objects, 1):
        places.append(len(out))
        out += f"{number} 0 obj\n{body}\nendobj\n"
    table = "".join(f"{place:010} 00000 n \n" for place in places)
    return (f"{out}xref\n0 {len(objects) + 1}\n0000000000 65535 f \n{table}"
            f"trailer\n<< /Size {len(objects) + 1} /Root 1 0 R >>\nstartxref\n{len(out)}\n%%EOF\n").encode("latin-1")


def docx(paragraphs):
    """A word processor's document: the first paragraph is its title."""
    body = ""
    for number, words in enumerate(paragraphs):
        style = '<w:pPr><w:pStyle w:val="Title"/></w:pPr>' if number == 0 else ""
        body += f'<w:p>{style}<w:r><w:t xml:space="preserve">{escape(words)}</w:t></w:r></w:p>'
    head = '<?xml version="1.0" encoding="UTF-8" standalone="yes"?>\n'
    kinds = "application/vnd.openxmlformats-officedocument.wordprocessingml"
    parts = {
        "[Content_Types].xml": head + '<Types xmlns="http://schemas.openxmlformats.org/package/2006/content-types">'
        '<Default Extension="rels" ContentType="application/vnd.openxmlformats-package.relationships+xml"/>'
        '<Default Extension="xml" ContentType="application/xml"/>'
        f'<Override PartName="/word/document.xml" ContentType="{kinds}.document.main+xml"/></Types>',
        "_rels/.rels": head + '<Relationships xmlns="http://schemas.openxmlformats.org/package/2006/relationships">'
        '<Relationship Id="rId1" Target="word/document.xml" '
        'Type="http://schemas.openxmlformats.org/officeDocument/2006/relationships/officeDocument"/></Relationships>',
        "word/document.xml": head + '<w:document xmlns:w="http://schemas.openxmlformats.org/wordprocessingml/2006/main">'
        f"<w:body>{body}</w:body></w:document>",
    }
    out = io.BytesIO()
    with zipfile.ZipFile(out, "w", zipfile.ZIP_DEFLATED) as archive:
        for name, text in parts.items():
            archive.writestr(zipfile.ZipInfo(name, (2024, 1, 1, 0, 0, 0)), text)
    return out.getvalue()
