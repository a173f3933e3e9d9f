#!/usr/bin/python3
"""The pages of a comparison, of one on many kinds of machines and of a history, in a real browser.
   browser_test.py METRIG-LAB LAB_MADE_STORE AXE      ends with 77 where there is no browser to test with"""
import contextlib
import csv
import json
import sqlite3
import sys
import unittest

sys.dont_write_bytecode = True
from browser import MARKUP, EveryPage, Run, run  # noqa: E402

with contextlib.suppress(ImportError):
    from selenium.webdriver.common.by import By
    from selenium.webdriver.common.keys import Keys


class Comparison(EveryPage, unittest.TestCase):
    with_markup = (".build .code", ".build code", ".warnings li", ".grid tbody th")

    @classmethod
    def setUpClass(cls):
        store = Run.made_store("run.db", 456)
        Run.said("page", store)
        cls.exported = json.loads(Run.said("export", store, "--json"))
        cls.url = (Run.path / "run.html").as_uri()

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

    def test_name_of_a_point_is_no_markup(self):
        self.run_script("location.hash = arguments[0]", f"#point-{self.marked_point()}")
        self.wait(lambda: MARKUP in self.shown())
        self.assertTrue(any(MARKUP in text for text in self.texts("#parameters option")))

    def marked_point(self):
        return next(i for i, point in enumerate(self.exported["points"]) if MARKUP in str(point["parameters"]))

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
        self.browser.execute_cdp_cmd("Browser.setDownloadBehavior", {"behavior": "allow", "downloadPath": str(Run.path)})
        for kind in ("json", "csv"):
            self.run_script("document.getElementById(arguments[0]).click()", "get-" + kind)
            self.wait((Run.path / f"run.{kind}").exists)
        self.assertEqual(json.loads((Run.path / "run.json").read_text()), self.exported)
        with open(Run.path / "run.csv", newline="") as file:
            rows = list(csv.DictReader(file))
        self.assertEqual([row["verdict"] for row in rows], [point["verdict"] for point in self.exported["points"]])


def changed_store(name, *changes):
    """A made-up store after changes, each a query with its values."""
    store = Run.made_store(name, 48)
    with contextlib.closing(sqlite3.connect(store)) as base, base:
        for query, *values in changes:
            base.execute(query, values)
    return store


class Fleet(EveryPage, unittest.TestCase):
    with_markup = (".answer .code", ".card h3", ".grid thead th")

    @classmethod
    def setUpClass(cls):
        stores = [changed_store(f"session{i}.db", ("UPDATE setting SET value = ? WHERE name = 'machine kind'", kind),
                                ("INSERT OR REPLACE INTO setting VALUES('session', ?)", f"session {i}"))
                  for i, kind in enumerate(("wide", "wide", MARKUP))]
        merged = Run.path / "merged.db"
        Run.said("merge", merged, *stores)
        Run.said("page", merged)
        cls.exported = json.loads(Run.said("export", merged, "--json"))
        cls.url = (Run.path / "merged.html").as_uri()

    def test_functions_by_kinds(self):
        kinds = self.exported["kinds"]
        self.assertEqual([(one["kind"], one["sessions"]) for one in kinds], sorted([("wide", 2), (MARKUP, 1)], key=lambda one: one[0]))
        functions = {point["function"] for point in kinds[0]["comparison"]["points"]}
        cells = self.browser.find_elements(By.CSS_SELECTOR, "a.cell")
        self.assertEqual(len(cells), len(functions) * len(kinds))
        cells[0].send_keys(Keys.ENTER)
        # both the table's filter and its fields follow
        self.wait(lambda: self.find("#kind").get_attribute("value") == kinds[0]["kind"])
        self.assertEqual(set(self.texts("#points td:nth-child(1)")), {kinds[0]["kind"]})
        self.assertEqual(set(self.texts("#points td .code")), {self.find("#sought").get_attribute("value")})


class History(EveryPage, unittest.TestCase):
    with_markup = (".answer .eyebrow", "#functions td", "#builds td", "#changes td")

    @classmethod
    def setUpClass(cls):
        history = Run.path / "history.db"
        for i in range(4):
            store = changed_store(f"night{i}.db", *(("UPDATE object SET sha256 = ? WHERE side = ?", f"{i + side:064x}", side)
                                                    for side in range(2)))
            Run.said("history", "add", history, store, "--old-label", f"b{i}", "--label", f"b{i + 1}" if i < 3 else MARKUP)
        Run.said("history", "page", history)
        cls.exported = json.loads(Run.said("history", "show", history, "--json"))
        cls.url = (Run.path / "history.html").as_uri()

    def test_a_line_leads_to_the_builds(self):
        names = [one["function"] for one in self.exported["functions"]]
        self.assertEqual(self.texts("#functions td a"), names)
        self.browser.find_elements(By.CSS_SELECTOR, "#functions td a")[1].click()
        self.wait(lambda: self.find("#function").get_attribute("value") == names[1])
        self.find("#level .chart").send_keys(Keys.END)
        self.wait(lambda: MARKUP in self.texts("#level .chart output")[0])


if __name__ == "__main__":
    run(*sys.argv[1:])
