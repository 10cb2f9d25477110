"""What the suite does not reach in src/, from gcovr's two JSON reports: coverage_report.py <summary> <details>."""

import json
import sys

LEAST_BRANCHES = 95.0  # percent; lines and functions are wanted in full


def unreached(source):
    """The numbers of the lines that are not reached, and those with a branch that is never taken."""
    lines = [line for line in source["lines"] if not line["gcovr/noncode"] and not line["gcovr/excluded"]]
    missed = [line["line_number"] for line in lines if line["count"] == 0]
    halves = [line["line_number"] for line in lines if line["count"] > 0
              and any(branch["count"] == 0 and not branch["throw"] for branch in line["branches"])]
    return missed, halves


def share(summary, what):
    covered, total = summary[f"{what}_covered"], summary[f"{what}_total"]
    return f"{covered:5} of {total:5} {what + ('es' if what == 'branch' else 's')} ({100 * covered / max(total, 1):5.1f} %)"


def main():
    with open(sys.argv[1]) as file:
        summary = json.load(file)
    with open(sys.argv[2]) as file:
        details = json.load(file)
    for source in details["files"]:
        missed, halves = unreached(source)
        functions = [function["name"] for function in source["functions"] if function["execution_count"] == 0]
        if missed or halves or functions:
            print(source["file"])
            for title, found in (("lines never reached", missed), ("branches never taken, in lines", halves),
                                 ("functions never called", functions)):
                if found:
                    print(f"  {title}: {', '.join(map(str, found))}")
    for what in ("line", "function", "branch"):
        print(share(summary, what))
    complete = all(summary[f"{what}_covered"] == summary[f"{what}_total"] for what in ("line", "function"))
    sys.exit(0 if complete and summary["branch_percent"] >= LEAST_BRANCHES else 1)


if __name__ == "__main__":
    main()
