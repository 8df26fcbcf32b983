#!/usr/bin/python3
"""Opens a roadx report in a headless Chromium and checks what a user would
see: no console message (an error, an uncaught exception), the page's script
ran (the contents link of the shown view is marked), the SVG holds one axis
path per road and one chart per cross section of the embedded data, and a
screenshot is not blank.

usage: check_page.py [--keep SCREENSHOT.png] REPORT.html...

The pages are opened four at a time (Chromium mostly waits); the first
page's screenshot is kept where --keep says. Prints one line per page and
its problems; exits 1 when any page has one."""
import json
import os
import re
import shutil
import subprocess
import sys
import tempfile
from concurrent.futures import ThreadPoolExecutor


def chromium(page, shot, profile):
    cmd = ['chromium', '--headless', '--no-sandbox', '--disable-gpu', '--disable-quic', '--no-first-run',
           '--disable-background-networking', '--disable-component-update', '--disable-sync',
           f'--user-data-dir={profile}', '--enable-logging=stderr', '--v=0', '--window-size=1280,900',
           f'--screenshot={shot}', '--dump-dom', 'file://' + os.path.abspath(page)]
    r = subprocess.run(cmd, capture_output=True, text=True, timeout=90)
    return r.returncode, r.stdout, r.stderr


def screenshot_ink(path):
    """Distinct colours and pixels that differ from the page background in
    the screenshot below the header (Pillow, which python3-matplotlib
    brings)."""
    from PIL import Image
    img = Image.open(path).convert('RGB')
    w, h = img.size
    part = img.crop((0, min(200, h - 1), w, h)).reduce(4)
    pixels = list(part.getdata())
    inked = sum(1 for p in pixels if p != (255, 255, 255) and p != (250, 250, 250))
    return len(set(pixels)), inked


def check(page, keep):
    data = json.loads(re.search(r'<script type="application/json" id="roadx-data">(.*?)</script>',
                                open(page, encoding='utf-8').read(), re.S).group(1))
    tmp = tempfile.mkdtemp(prefix='roadx-chromium-')
    try:
        shot = os.path.join(tmp, 'shot.png')
        rc, dom, err = chromium(page, shot, os.path.join(tmp, 'profile'))
        problems = []
        if rc != 0:
            problems.append(f'chromium exited with {rc}')
        console = [l for l in err.splitlines() if ':CONSOLE' in l]
        problems += [f'console: {l}' for l in console]
        if 'class="on"' not in dom:
            problems.append('the page script did not mark the shown view')
        roads = len(data['roads'])
        sections = sum(len(r['sections']) for r in data['roads'])
        axes = len(re.findall(r'<path class="axis"', dom))
        charts = len(re.findall(r'<svg class="section-chart"', dom))
        if axes != roads:
            problems.append(f'{axes} axis paths for {roads} roads')
        if charts != sections:
            problems.append(f'{charts} section charts for {sections} sections')
        if not os.path.exists(shot):
            problems.append('no screenshot')
        else:
            colours, inked = screenshot_ink(shot)
            if colours < 8 or inked < 200:
                problems.append(f'screenshot looks blank ({len(colours)} colours, {inked} inked samples)')
            if keep:
                shutil.copyfile(shot, keep)
        lines = [f'{page}: {roads} roads, {sections} sections, {len(console)} console messages']
        return lines + ['  ' + p for p in problems], not problems
    finally:
        shutil.rmtree(tmp, ignore_errors=True)


def main():
    args, keep = sys.argv[1:], None
    if args[:1] == ['--keep']:
        keep, args = args[1], args[2:]
    with ThreadPoolExecutor(max_workers=4) as pool:
        results = list(pool.map(lambda i: check(args[i], keep if i == 0 else None), range(len(args))))
    for lines, _ in results:
        print('\n'.join(lines))
    sys.exit(0 if all(ok for _, ok in results) else 1)


main()
