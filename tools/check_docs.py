# SPDX-License-Identifier: MIT
"""Checks the built documentation: that every link inside of it has its target, that nothing comes
from a network, and, in headless Chromium, that the search finds what is there and that no page is
wider than a narrow window. Leaves screenshots in BUILD_DIR/docs/screenshots.

Usage: check_docs.py BUILD_DIR, with an interpreter that has Selenium (Debian's)
"""
import html.parser
import pathlib
import re
import sys
import urllib.parse

from selenium import webdriver
from selenium.webdriver.common.by import By
from selenium.webdriver.support.ui import WebDriverWait

WIDE, NARROW = (1440, 900), (390, 844)
SHOWN = {'start': 'index.html', 'class': 'reference/OpenQuilRender/ZRenderView.html',
         'guide': 'guides/callbacks.html', 'opengl': 'reference/opengl/core.html',
         'options': 'reference/quilhost_options.html', 'nodes': 'guides/nodes.html',
         'constants': 'reference/constants.html', 'overview': 'reference/OpenQuil.html',
         'values': 'reference/OpenQuil/ZVector.html', 'search': 'search.html?q=updatePixels'}
DARK = {'features': [{'name': 'prefers-color-scheme', 'value': 'dark'}]}
# What is wider than there is room for: the page, and the parts of it that would scroll for
# themselves. Code and tables may.
WIDER = '''
    const parts = [...document.querySelectorAll('html, .page, .main, .content')];
    const over = part => part.scrollWidth - Math.min(part.clientWidth, %d);
    return parts.map(over).filter(width => width > 0);
''' % NARROW[0]
FETCHED = re.compile(r'(?:url\(|@import)\s*["\']?((?:https?:)?//[^"\')]*)')
FOUND = 'OpenQuilRender/ZRenderView.html#OpenQuilRender.ZRenderView.updatePixels'


class Page(html.parser.HTMLParser):
    """What a page links to, what it loads, and the anchors that it has."""

    def __init__(self, path):
        super().__init__()
        self.links, self.loaded, self.anchors = [], [], set()
        self.feed(path.read_text(encoding='utf-8'))

    def handle_starttag(self, tag, attributes):
        given = dict(attributes)
        self.anchors.update(given[name] for name in ('id', 'name') if given.get(name))
        if given.get('href') and tag == 'a':
            self.links.append(given['href'])
        if given.get('src') or tag == 'link' and given.get('rel') not in ('canonical', None):
            self.loaded.append(given.get('src') or given.get('href', ''))


def broken_links(site):
    pages = {path: Page(path) for path in site.rglob('*.html')}
    for path, page in pages.items():
        for link in page.links + page.loaded:
            parts = urllib.parse.urlsplit(link)
            if parts.scheme == 'data' or parts.scheme and link in page.links:
                continue
            name = urllib.parse.unquote(parts.path) or path.name
            there = (path.parent / name).resolve()
            anchor = urllib.parse.unquote(parts.fragment)
            if parts.scheme or parts.netloc or not there.is_file():
                yield '%s: %s is not there' % (path.relative_to(site), link)
            elif anchor and there in pages and anchor not in pages[there].anchors:
                yield '%s: %s has no such place' % (path.relative_to(site), link)
    for path in site.rglob('*.css'):
        for link in FETCHED.findall(path.read_text()):
            yield '%s fetches %s' % (path.relative_to(site), link)


def browser():
    options = webdriver.ChromeOptions()
    for argument in 'headless=new', 'no-sandbox', 'disable-gpu', 'hide-scrollbars':
        options.add_argument('--' + argument)
    return webdriver.Chrome(options=options)


def show(driver, url, size):
    driver.execute_cdp_cmd('Emulation.setDeviceMetricsOverride', {
        'width': size[0], 'height': size[1], 'deviceScaleFactor': 1, 'mobile': size == NARROW})
    driver.get(url)


def browser_faults(driver, site, folder):
    for name, page in SHOWN.items():
        for word, size in ('wide', WIDE), ('narrow', NARROW):
            show(driver, (site / 'index.html').as_uri().replace('index.html', page), size)
            if name == 'search':
                WebDriverWait(driver, 20).until(
                    lambda d: d.find_elements(By.CSS_SELECTOR, '#search-results li a'))
                found = [link.get_attribute('href') for link in
                         driver.find_elements(By.CSS_SELECTOR, '#search-results li a')]
                if not any(link.endswith(FOUND) for link in found):
                    yield 'the search for updatePixels finds %s' % found
            driver.save_screenshot(str(folder / ('%s_%s.png' % (name, word))))
    driver.execute_cdp_cmd('Emulation.setEmulatedMedia', DARK)
    show(driver, (site / SHOWN['class']).as_uri(), WIDE)
    driver.save_screenshot(str(folder / 'class_dark.png'))
    for path in sorted(site.rglob('*.html')):
        show(driver, path.as_uri(), NARROW)
        over = driver.execute_script(WIDER)
        if over:
            yield '%s is too wide for a narrow window, by %s' % (path.relative_to(site), over)
        for line in driver.get_log('browser'):
            yield '%s: %s' % (path.relative_to(site), line['message'])


def main():
    docs = pathlib.Path(sys.argv[1]).resolve() / 'docs'
    site, folder = docs / 'html', docs / 'screenshots'
    folder.mkdir(exist_ok=True)
    faults = list(broken_links(site))
    driver = browser()
    try:
        faults += browser_faults(driver, site, folder)
    finally:
        driver.quit()
    print('\n'.join(faults) or 'Every link has its target. The screenshots are in %s' % folder)
    return 1 if faults else 0


if __name__ == '__main__':
    sys.exit(main())
