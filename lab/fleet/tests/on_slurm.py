#!/usr/bin/env python3
"""A comparison on four nodes of two kinds: one node is lost in the middle and comes back, one job is requeued, and
the merged store is whole.

on_slurm.py METRIG_LAB INSTRUMENT      the instrument measures nothing; status 77 where no cluster can be started
"""

import contextlib
import json
import os
import pathlib
import signal
import sqlite3
import subprocess
import sys
import tempfile

sys.dont_write_bytecode = True
import cluster as slurm  # noqa: E402

LAB, INSTRUMENT = sys.argv[1:3]
NODES = {"n1": "alpha", "n2": "alpha", "n3": "beta", "n4": "beta"}
SESSIONS = ("alpha.1", "alpha.2", "beta.1", "beta.2")

FLEET = """
folder = "{folder}"
{more}
[[kind]]
name = "alpha"
constraint = "alpha"
keys = ["-fF"]
[[kind]]
name = "beta"
constraint = "{constraint}"
"""


def fleet_command(folder, constraint="beta", more=""):
    file = folder / "fleet.toml"
    file.write_text(FLEET.format(folder=folder / "shared", constraint=constraint, more=more))
    return [LAB, "fleet", str(file), "-o", str(folder / "merged.db"), "--label", str(folder), "--", "compare",
            str(folder / "old"), str(folder / "new"), "--instrument", INSTRUMENT, "--no-wait", "--epochs=3", "--pairs=12:24"]


def under_way(cluster, folder, node):
    """Job and identity of the session on the node, once it is in its middle; None before."""
    job, _, name = cluster.run("squeue", "--noheader", "--states=RUNNING", f"--nodelist={node}",
                               "--format=%A %j.%K").strip().partition(" ")
    store = next((folder / "shared").glob(f"*/{name.removeprefix('metrig-')}.db"), None)
    # it may not have its tables yet
    with contextlib.suppress(sqlite3.Error), contextlib.closing(sqlite3.connect(f"file:{store}?mode=ro", uri=True)) as base:
        if base.execute("SELECT count(DISTINCT pair) FROM visit").fetchone()[0] >= 4:
            return job, base.execute("SELECT value FROM setting WHERE name = 'session'").fetchone()[0]
    return None


def nobody_has_it(cluster, folder):
    done = subprocess.run(fleet_command(folder, constraint="gamma"), capture_output=True, text=True, check=False)
    assert done.returncode == 2, done
    assert "kind beta: the cluster has not a node with gamma" in done.stderr, done.stderr
    assert not (folder / "shared").exists() and not cluster.run("squeue", "--noheader"), "something was submitted"


def disturb(cluster, folder):
    """Loses node n1, which comes back, and requeues a session of the other kind, both in their middle; the
    identities of the two sessions."""
    _, lost = cluster.until(lambda: under_way(cluster, folder, "n1"), "a session under way on n1")
    cluster.lose_node("n1")
    job, requeued = cluster.until(lambda: under_way(cluster, folder, "n3"), "a session under way on n3")
    said = cluster.run("scontrol", "requeue", job)
    assert not said, said
    cluster.until(lambda: not cluster.run("squeue", "--noheader", "--states=RUNNING", "--nodelist=n1"), "n1 given up")
    cluster.start_node("n1")
    return {lost, requeued}


def check_whole(folder, disturbed):
    """All four sessions from their first pair to their last, and those that were disturbed are the same ones."""
    merged = folder / "merged.db"
    with contextlib.closing(sqlite3.connect(merged)) as base:
        ask = lambda query: base.execute(query).fetchall()
        assert ask("SELECT kind, count(*) FROM session GROUP BY kind") == [("alpha", 2), ("beta", 2)]
        assert disturbed <= {identity for identity, in ask("SELECT identity FROM session")}, "begun anew"
        # nothing disturbs what the instruments say, so all sessions go the same way, be they resumed or not
        visits = ask("SELECT count(*), max(pair), count(DISTINCT pair) FROM visit GROUP BY session")
        assert len(visits) == 4 and len(set(visits)) == 1 and visits[0][1] == visits[0][2], visits
    document = json.loads(subprocess.run([LAB, "export", str(merged), "--json"], capture_output=True, check=True).stdout)
    assert abs(document["family"] - 0.01) < 1e-9, document["family"]
    for kind in document["kinds"]:
        comparison = kind["comparison"]
        found = {(point["function"], point["verdict"]) for point in comparison["points"]}
        assert kind["sessions"] == 2 and comparison["finished"], kind["kind"]
        assert found == {("F1", "same"), ("F2", "slower"), ("F3", "same")}, found
    run = next((folder / "shared").glob("*/merge.log")).parent
    again = subprocess.run([LAB, "merge", str(merged), *(str(run / f"{session}.db") for session in SESSIONS)],
                           capture_output=True, text=True, check=True)
    assert "0 new sessions, 0 new visits" in again.stdout, again.stdout


def main():
    reason = slurm.why_not()
    if reason:
        print("skipped:", reason)
        sys.exit(77)
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(1))  # nothing is left behind then either
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        slurm.fake_library(folder / "old", "")
        slurm.fake_library(folder / "new", "slow F2 1.5")
        try:
            with slurm.Cluster(folder / "cluster", NODES) as cluster:
                nobody_has_it(cluster, folder)
                os.environ["FAKE_DELAY_US"] = "6000"
                with (folder / "fleet.log").open("w") as log, subprocess.Popen(
                        fleet_command(folder, more='staging = "sbcast"'), stdout=log, stderr=log) as fleet:
                    try:
                        disturbed = disturb(cluster, folder)
                        cluster.until(lambda: fleet.poll() is not None, "the end of the fleet")
                        assert fleet.returncode == 1, fleet.returncode
                    finally:
                        fleet.kill()
                check_whole(folder, disturbed)
        except BaseException:
            for log in [*folder.glob("*.log"), *folder.glob("cluster/*.log"), *folder.glob("shared/*/*.log")]:
                print(f"=== {log}\n{log.read_text(errors='replace')[-3000:]}")
            raise
        print((folder / "fleet.log").read_text())


main()
