"""Whether JSON documents follow their schemas, and whether Python and SQLite read the CSV of the same points
as the same values.

Use:  check_formats.py SCHEMAS DOCUMENT.json [POINTS.csv]
"""
import csv
import json
import os
import subprocess
import sys

import jsonschema

FIGURES = ("old_clocks", "new_clocks", "ratio", "clocks", "microseconds", "calls", "floor", "per_unit", "reached", "loop")
PARTS = "comparison.schema.json"
IN_JSON = {"old_clocks": "old", "new_clocks": "new", "per_unit": "perUnit"}


def figure_of(point, name):
    if name == "ratio" and name in point:
        return point["ratio"][1]
    return (point.get("figure") or point).get(IN_JSON.get(name, name))


def objects(value, path=()):
    """All objects in a document but those that hold names of the user's."""
    if isinstance(value, dict) and path[-1:] != ("parameters",):
        yield value
        for name, inner in value.items():
            yield from objects(inner, path + (name,))
    elif isinstance(value, list):
        for inner in value[:3]:
            yield from objects(inner, path)


def check_schema(schemas, document):
    name = document["schema"].removeprefix("metrig-lab.")
    with open(os.path.join(schemas, name + ".schema.json"), encoding="utf-8") as file:
        schema = json.load(file)
    jsonschema.Draft202012Validator.check_schema(schema)
    # schemas take parts of another one by the name of its file
    with open(os.path.join(schemas, PARTS), encoding="utf-8") as file:
        schema.setdefault("$defs", {})["parts"] = {"$id": PARTS, **json.load(file)}
    validator = jsonschema.Draft202012Validator(schema)
    validator.validate(document)
    # closed: a field too many or one that is missing is noticed wherever it is
    for part in objects(document):
        part["unknown"] = 1
        assert not validator.is_valid(document), f"a field more passes in {sorted(part)}"
        del part["unknown"]
        for field in list(part):
            value = part.pop(field)
            assert not validator.is_valid(document), f"{field} may be missing"
            part[field] = value


def check_csv(path, points):
    with open(path, newline="", encoding="utf-8") as file:
        rows = list(csv.DictReader(file, strict=True))
    assert len(rows) == len(points), f"{len(rows)} rows of {len(points)} points"
    for row, point in zip(rows, points):
        assert None not in row and None not in row.values(), f"a row of another width: {row}"
        assert row["function"] == point["function"]
        for name, value in point["parameters"].items():
            assert row[name] == value, f"{name}: {row[name]!r} is not {value!r}"
        for name in FIGURES:
            if name in row:
                its = figure_of(point, name)
                assert (float(row[name]) if row[name] else None) == its, f"{name}: {row[name]}, {its}"


def check_sqlite(path, points):
    figure = next(name for name in ("old_clocks", "floor", "clocks") if figure_of(points[0], name) is not None)
    query = f"SELECT count(*), total({figure}), count(DISTINCT function) FROM points;"
    # a path with a quotation mark could end the command
    with open(path, encoding="utf-8") as file:
        run = subprocess.run(
            ["sqlite3", "-bail", ":memory:", ".import --csv /dev/stdin points", query],
            stdin=file, capture_output=True, text=True, check=True)
    assert run.stderr == "", run.stderr
    count, total, functions = run.stdout.strip().split("|")
    assert int(count) == len(points)
    assert abs(float(total) - sum(figure_of(point, figure) or 0 for point in points)) < 1e-6 * float(total)
    assert int(functions) == len({point["function"] for point in points})


def main():
    schemas, document_path, *csv_paths = sys.argv[1:]
    with open(document_path, encoding="utf-8") as file:
        document = json.load(file)
    check_schema(schemas, document)
    for path in csv_paths:
        assert document["points"], "no points"
        check_csv(path, document["points"])
        check_sqlite(path, document["points"])
    print("checked")


main()
