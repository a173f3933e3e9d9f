#!/usr/bin/python3
"""The page of a comparison in a real browser.
   browser_test.py METRIG-LAB LAB_MADE_STORE AXE      ends with 77 where there is no browser to test with"""
import csv
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
    from selenium.webdriver.common.keys import Keys
except ImportError:
    webdriver = None

MARKUP = "</script><img src=x onerror=alert(1)>"


def browser(profile):
    options = webdriver.ChromeOptions()
    for word in ("headless=new no-sandbox disable-gpu disable-quic no-first-run disable-background-networking"
                 " disable-component-update disable-sync force-prefers-reduced-motion").split():
        options.add_argument("--" + word)
    options.add_argument(f"--user-data-dir={profile}")
    options.set_capability("goog:loggingPrefs", {"browser": "ALL", "performance": "ALL"})
    return webdriver.Chrome(options=options, service=webdriver.chrome.service.Service("/usr/bin/chromedriver"))


class Page(unittest.TestCase):
    """One browser for all; each test opens the page anew."""

    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(cls.folder.cleanup)
        cls.path = pathlib.Path(cls.folder.name)
        store = cls.path / "run.db"
        subprocess.run([STORE_MAKER, store], check=True)
        subprocess.run([LAB, "page", store], check=True, stdout=subprocess.DEVNULL)
        cls.exported = json.loads(subprocess.run([LAB, "export", store, "--json"], check=True, capture_output=True).stdout)
        cls.url = (cls.path / "run.html").as_uri()
        cls.browser = browser(cls.path / "profile")
        cls.addClassCleanup(cls.browser.quit)

    def setUp(self):
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

    def shown(self):
        """The point shown in full, by its function and parameters."""
        return self.find("#point-name").text

    def name(self, index):
        point = self.exported["points"][index]
        return " ".join([point["function"]] + [f"{name}={value}" for name, value in point["parameters"].items()])

    def test_first_screen_has_the_counts(self):
        summary = self.exported["summary"]
        self.assertEqual(self.texts(".tile-number"), [str(summary[key]) for key in ("slower", "faster", "same", "unsure")])
        for key in ("slower", "faster", "same", "unsure", "crashed"):
            self.assertGreater(summary[key], 0, f"the made-up store has none: {key}")

    def test_names_are_no_markup(self):
        self.assertEqual(self.run_script("return document.images.length"), 0)
        for selector in (".build .code", ".build code", ".warnings li", ".grid tbody th", "#parameters option"):
            if selector == "#parameters option":
                self.run_script("location.hash = arguments[0]", f"#point-{self.marked_point()}")
                self.wait(lambda: MARKUP in self.shown())
            self.assertTrue(any(MARKUP in text for text in self.texts(selector)), selector)

    def marked_point(self):
        return next(i for i, point in enumerate(self.exported["points"]) if MARKUP in str(point["parameters"]))

    def wait(self, condition):
        end = time.monotonic() + 5
        while not condition():
            self.assertLess(time.monotonic(), end, "nothing happened")
            time.sleep(0.02)

    def test_map_leads_to_the_point(self):
        cells = self.browser.find_elements(By.CSS_SELECTOR, "a.cell")
        self.assertEqual(len(cells), len(self.exported["points"]))
        index = int(cells[17].get_attribute("href").rpartition("-")[2])
        cells[17].click()
        self.wait(lambda: self.shown() == self.name(index))
        self.assertEqual(self.browser.switch_to.active_element.get_attribute("id"), "point-name")

    def test_map_by_keys(self):
        self.assertEqual(len(self.browser.find_elements(By.CSS_SELECTOR, "a.cell[tabindex='0']")), 1)
        self.run_script("document.querySelector('a.cell').focus()")
        for key in (Keys.ARROW_RIGHT, Keys.ARROW_DOWN, Keys.ENTER):
            self.browser.switch_to.active_element.send_keys(key)
        row = self.run_script("return document.querySelectorAll('.grid tbody tr:not(.span)')[1].cells[2].firstChild.hash")
        self.wait(lambda: self.run_script("return location.hash") == row)
        self.assertEqual(self.shown(), self.name(int(row.rpartition("-")[2])))

    def test_charts_by_keys(self):
        self.run_script("location.hash = '#point-0'")
        for chart, key, said in (("#point .chart", Keys.END, "pair "), ("#ratios .chart", Keys.HOME, "zylsMade"),
                                 ("#run .chart", Keys.ARROW_RIGHT, "after ")):
            self.run_script("document.querySelector(arguments[0]).scrollIntoView()", chart)
            self.wait(lambda: self.run_script("return document.querySelector(arguments[0] + ' canvas') !== null", chart))
            self.find(chart).send_keys(key)
            self.assertTrue(self.texts(chart + " output")[0].startswith(said), chart)
        self.find("#ratios .chart").send_keys(Keys.HOME, Keys.ENTER)
        slowest = max((point for point in self.exported["points"] if point["ratio"][1]), key=lambda point: point["ratio"][1])
        self.wait(lambda: self.shown().startswith(slowest["function"]))

    def test_busy_stretches(self):
        course = self.run_script("return page.comparison.course")
        self.assertTrue(0 < len(course["busy"]) < len(course["slices"]) / 2)

    def test_sorting(self):
        head = "#points th:nth-child(3) button"
        changes = lambda: [float(text.replace("\u2212", "-").rstrip("%")) for text in self.texts("#points td:nth-child(3) strong")
                           if text != "?"]
        self.find(head).click()
        self.assertEqual(self.find("#points th:nth-child(3)").get_attribute("aria-sort"), "descending")
        falling = changes()
        self.assertEqual(falling, sorted(falling, reverse=True))
        self.find(head).click()
        rising = changes()
        self.assertEqual(rising, sorted(rising))
        self.assertLess(rising[0], falling[0])

    def test_filtering(self):
        self.find("#search").send_keys("zylsmade1_ lenFind=8")
        names = self.texts("#points td:nth-child(2)")
        self.assertTrue(len(names) == 6 and all("zylsMade1_8u" in name and "lenFind=8" in name for name in names), names)
        self.run_script("document.querySelector('.tile.faster').click()")
        self.assertEqual(set(self.texts("#points tbody .badge .word")), {"faster"})
        self.assertIn(str(self.exported["summary"]["faster"]), self.find("#points .count").text)

    def test_more_rows(self):
        before = len(self.texts("#points tbody tr"))
        self.assertLess(before, len(self.exported["points"]))
        self.run_script("document.querySelector('#points .buttons button:last-child').click()")
        self.assertEqual(len(self.texts("#points tbody tr")), len(self.exported["points"]))

    def test_downloads(self):
        self.browser.execute_cdp_cmd("Browser.setDownloadBehavior", {"behavior": "allow", "downloadPath": str(self.path)})
        for kind in ("json", "csv"):
            self.run_script("document.getElementById(arguments[0]).click()", "get-" + kind)
            self.wait((self.path / f"run.{kind}").exists)
        self.assertEqual(json.loads((self.path / "run.json").read_text()), self.exported)
        with open(self.path / "run.csv", newline="") as file:
            rows = list(csv.DictReader(file))
        self.assertEqual([row["verdict"] for row in rows], [point["verdict"] for point in self.exported["points"]])

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
            self.run_script(AXE)
            found = self.browser.execute_async_script(
                "const done = arguments[0]; axe.run({resultTypes: ['violations']}).then(result => done(result.violations))")
            grave = [(one["id"], node["html"]) for one in found if one["impact"] in ("serious", "critical") for node in one["nodes"]]
            self.assertEqual(grave, [], scheme)


if __name__ == "__main__":
    if webdriver is None or not shutil.which("chromium") or not pathlib.Path("/usr/bin/chromedriver").exists():
        print("chromium, chromium-driver or python3-selenium is not there (script/bootstrap browser)")
        sys.exit(77)
    LAB, STORE_MAKER = sys.argv[1:3]
    AXE = pathlib.Path(sys.argv[3]).read_text()
    unittest.main(argv=sys.argv[:1], verbosity=2)
