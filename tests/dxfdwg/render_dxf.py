#!/usr/bin/python3
"""Renders the model space of a DXF file to a PNG, for a person to look at.

Usage: render_dxf.py FILE.dxf OUT.png [WIDTH_PX [XMIN YMIN XMAX YMAX]]

Not a test: a drawing's look is judged by eye. Uses ezdxf's drawing add-on
with the matplotlib backend on a white background.
"""
import sys

import matplotlib

matplotlib.use("Agg")
import matplotlib.pyplot as plt  # noqa: E402
import ezdxf  # noqa: E402
from ezdxf.addons.drawing import Frontend, RenderContext  # noqa: E402
from ezdxf.addons.drawing.matplotlib import MatplotlibBackend  # noqa: E402
from ezdxf.addons.drawing.properties import LayoutProperties  # noqa: E402


def main():
    src, out = sys.argv[1], sys.argv[2]
    width = int(sys.argv[3]) if len(sys.argv) > 3 else 2000
    window = [float(v) for v in sys.argv[4:8]] if len(sys.argv) > 7 else None
    doc = ezdxf.readfile(src)
    msp = doc.modelspace()
    fig = plt.figure(figsize=(width / 100, width / 100), dpi=100)
    ax = fig.add_axes([0, 0, 1, 1])
    ctx = RenderContext(doc)
    props = LayoutProperties.from_layout(msp)
    props.set_colors("#ffffff")
    Frontend(ctx, MatplotlibBackend(ax)).draw_layout(msp, finalize=True, layout_properties=props)
    if window:
        ax.set_xlim(window[0], window[2])
        ax.set_ylim(window[1], window[3])
    fig.savefig(out, dpi=100, facecolor="#ffffff")
    return 0


if __name__ == "__main__":
    sys.exit(main())
