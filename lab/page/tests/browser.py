"""One page after another in a real browser, for tests; and what holds for every page."""
import json
import pathlib
import shutil
import subprocess
import sys
import tempfile
import time
import unittest

try:
    from selenium import webdriver
    from selenium.webdriver.common.by import By
except ImportError:
    webdriver = None

MARKUP = "</script><img src=x onerror=alert(1)>"


def started(profile):
    options = webdriver.ChromeOptions()
    for word in ("headless=new no-sandbox disable-gpu disable-quic no-first-run disable-background-networking"
                 " disable-component-update disable-sync force-prefers-reduced-motion").split():
        options.add_argument("--" + word)
    options.add_argument(f"--user-data-dir={profile}")
    options.set_capability("goog:loggingPrefs", {"browser": "ALL", "performance": "ALL"})
    return webdriver.Chrome(options=options, service=webdriver.chrome.service.Service("/usr/bin/chromedriver"))


class Run:
    """What all tests share: the programs, one browser, a folder that goes at the end."""
    lab = store_maker = axe = browser = path = None

    @classmethod
    def begin(cls, folder, lab, store_maker, axe):
        cls.lab, cls.store_maker, cls.axe = lab, store_maker, pathlib.Path(axe).read_text()
        cls.path = pathlib.Path(folder)
        cls.browser = started(cls.path / "profile")

    @classmethod
    def made_store(cls, name, points):
        store = cls.path / name
        subprocess.run([cls.store_maker, store, str(points)], check=True)
        return store

    @classmethod
    def said(cls, *words):
        """What metrig-lab says, whatever status it ends with."""
        return subprocess.run([cls.lab, *map(str, words)], check=False, stdout=subprocess.PIPE).stdout.decode()


class EveryPage:
    """Each test opens the page anew. A class of tests has `url`, and `with_markup`: what shows names that look like markup."""

    def setUp(self):
        self.browser = Run.browser
        self.browser.get("about:blank")
        self.emulate(1280, "light")
        self.browser.get_log("performance")
        self.open(self.url)

    def tearDown(self):
        self.assertEqual(self.browser.get_log("browser"), [])

    def open(self, url):
        self.browser.get(url)
        self.wait(lambda: self.run_script("return document.getElementById('data') !== null"))

    def emulate(self, width, scheme):
        self.browser.execute_cdp_cmd("Emulation.setDeviceMetricsOverride", {
            "width": width, "height": 800, "deviceScaleFactor": 1, "mobile": width < 500})
        self.browser.execute_cdp_cmd("Emulation.setEmulatedMedia", {
            "features": [{"name": "prefers-color-scheme", "value": scheme}]})

    def find(self, selector):
        return self.browser.find_element(By.CSS_SELECTOR, selector)

    def texts(self, selector):
        return self.browser.execute_script(
            "return [...document.querySelectorAll(arguments[0])].map(node => node.textContent)", selector)

    def run_script(self, text, *arguments):
        return self.browser.execute_script(text, *arguments)

    def wait(self, condition):
        end = time.monotonic() + 5
        while not condition():
            self.assertLess(time.monotonic(), end, "nothing happened")
            time.sleep(0.02)

    def test_no_request_leaves(self):
        self.run_script("document.querySelectorAll('section').forEach(node => node.scrollIntoView())")
        messages = [json.loads(entry["message"])["message"] for entry in self.browser.get_log("performance")]
        asked = {message["params"]["request"]["url"] for message in messages if message["method"] == "Network.requestWillBeSent"}
        self.assertLessEqual({url for url in asked if not url.startswith("blob:null/")}, {self.url, "about:blank"})
        # nor could one, and nothing that is put into the page runs
        self.run_script("""const script = document.createElement("script"); script.textContent = "window.ran = true";
            const image = new Image(); image.src = "http://127.0.0.1:9/"; document.body.append(script, image);""")
        self.assertIsNone(self.run_script("return window.ran"))
        self.wait(lambda: len(self.refused) == 2)

    @property
    def refused(self):
        self.entries = getattr(self, "entries", []) + self.browser.get_log("browser")
        return [entry for entry in self.entries if "Content Security Policy" in entry["message"]]

    def test_narrow(self):
        self.emulate(360, "light")
        self.open(self.url + "#map")
        self.assertLessEqual(self.run_script("return document.documentElement.scrollWidth"), 360)

    def test_accessibility(self):
        for width, scheme in ((1280, "light"), (360, "dark")):
            self.emulate(width, scheme)
            self.run_script(Run.axe)
            found = self.browser.execute_async_script(
                "const done = arguments[0]; axe.run({resultTypes: ['violations']}).then(result => done(result.violations))")
            grave = [(one["id"], node["html"]) for one in found if one["impact"] in ("serious", "critical") for node in one["nodes"]]
            self.assertEqual(grave, [], scheme)

    def test_names_are_no_markup(self):
        self.assertEqual(self.run_script("return document.images.length"), 0)
        for selector in self.with_markup:
            self.assertTrue(any(MARKUP in text for text in self.texts(selector)), selector)


def run(*arguments):
    """Ends with 77 where there is no browser to test with."""
    if webdriver is None or not shutil.which("chromium") or not pathlib.Path("/usr/bin/chromedriver").exists():
        print("chromium, chromium-driver or python3-selenium is not there (script/bootstrap browser)")
        sys.exit(77)
    with tempfile.TemporaryDirectory() as folder:
        Run.begin(folder, *arguments)
        try:
            unittest.main(argv=sys.argv[:1], verbosity=2)
        finally:
            Run.browser.quit()
