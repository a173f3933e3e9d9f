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
import time

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
    return [LAB, "fleet", str(file), "-o", str(folder / "merged.db"), "--", "compare", str(folder / "old"),
            str(folder / "new"), "--instrument", INSTRUMENT, "--no-wait", "--epochs=3", "--pairs=12:24"]


def pairs_of(store):
    """How many pairs have visited something; 0 before there is a store."""
    with contextlib.suppress(sqlite3.Error), contextlib.closing(sqlite3.connect(f"file:{store}?mode=ro", uri=True)) as base:
        return base.execute("SELECT count(DISTINCT pair) FROM visit").fetchone()[0]
    return 0


def nobody_has_it(cluster, folder):
    done = subprocess.run(fleet_command(folder, constraint="gamma"), capture_output=True, text=True, check=False)
    assert done.returncode == 2, done
    assert "kind beta: the cluster has not a node with gamma" in done.stderr, done.stderr
    assert not (folder / "shared").exists() and not cluster.run("squeue", "--noheader"), "something was submitted"


def disturb(cluster, folder):
    """Loses node n1, which comes back, and requeues a session of the other kind, all in their middle."""
    def under_way():
        stores = [next((folder / "shared").glob(f"*/{session}.db"), "") for session in SESSIONS]
        return all(store and pairs_of(store) >= 4 for store in stores)

    cluster.until(under_way, "all sessions under way")
    cluster.lose_node("n1")
    job = cluster.run("squeue", "--noheader", "--nodelist=n3", "--format=%A").strip()
    print("requeued:", job, cluster.run("scontrol", "requeue", job))
    cluster.until(lambda: not cluster.run("squeue", "--noheader", "--states=RUNNING", "--nodelist=n1"), "n1 given up")
    cluster.start_node("n1")
    time.sleep(5)  # the end of the lost run reaches the node late, and would end the next run


def start_what_waits(cluster, fleet):
    """Slurm lets what is requeued wait for two minutes."""
    waiting = cluster.run("squeue", "--noheader", "--states=PENDING", "--name=metrig-alpha,metrig-beta", "--format=%A")
    for job in waiting.split():
        cluster.run("scontrol", "update", f"JobId={job}", "StartTime=now")
    return fleet.poll() is not None


def check_whole(folder):
    merged = folder / "merged.db"
    with contextlib.closing(sqlite3.connect(merged)) as base:
        ask = lambda query: base.execute(query).fetchall()
        assert ask("SELECT kind, count(*) FROM session GROUP BY kind") == [("alpha", 2), ("beta", 2)]
        assert ask("SELECT session, pair, point FROM visit GROUP BY 1, 2, 3 HAVING count(*) > 1") == [], "twice"
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
                        disturb(cluster, folder)
                        cluster.until(lambda: start_what_waits(cluster, fleet), "the end of the fleet", 90)
                        assert fleet.returncode == 1, fleet.returncode
                    finally:
                        fleet.kill()
                check_whole(folder)
        except BaseException:
            for log in [*folder.glob("*.log"), *folder.glob("cluster/*.log"), *folder.glob("shared/*/*.log")]:
                print(f"=== {log}\n{log.read_text(errors='replace')[-3000:]}")
            raise
        print((folder / "fleet.log").read_text())


main()
