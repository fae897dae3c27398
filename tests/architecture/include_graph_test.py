# The layering of docs/ARCHITECTURE.md, checked on the include graph of src/ and qmcad/:
#   /usr/bin/python3 include_graph_test.py SOURCE_DIR
# Prints each broken rule and exits 1; exits 0 when every rule holds.
import os
import re
import sys

INCLUDE = re.compile(r'^\s*#\s*include\s*"([^"]+)"')
HOST = {"host", "host/db"}
BASE = {"base"}
FILEOPS = {"shared/fileops"}
# What each folder of src/ may include besides itself; a "views" subfolder
# may include what its folder may, its folder, and their views.
MAY_INCLUDE = {
    "base": set(),
    "host": BASE,
    "host/db": {"host"} | BASE,
    "shared/fileops": HOST | BASE,
    "app": FILEOPS | HOST | BASE,
    "shared": {"app"} | FILEOPS | HOST | BASE,
    "settings": {"app"} | FILEOPS | HOST | BASE,
    "ui": {"app"} | FILEOPS | HOST | BASE,
    "drawingdata": {"app", "settings"} | FILEOPS | HOST | BASE,
    "library": {"shared", "settings", "drawingdata", "ui", "app"} | FILEOPS | HOST | BASE,
    "panel": {"shared", "settings", "drawingdata", "ui", "app"} | FILEOPS | HOST | BASE,
}
MODULE = set(MAY_INCLUDE) - HOST - BASE
# The entry makes the windows too: it may include every folder's views.
MAY_INCLUDE["app/entry"] = MODULE | {f + "/views" for f in MODULE} | HOST | BASE
# Calls that only base makes for the system.
BASE_ONLY_CALLS = re.compile(r"\b(getenv|localtime_r|localtime|gmtime_r)\s*\(")


def sources(root, top):
    for folder, _, files in os.walk(os.path.join(root, top)):
        for name in sorted(files):
            if name.endswith((".h", ".cpp")):
                yield os.path.normpath(os.path.join(folder, name))


def rules_of(folder):
    if folder.endswith("/views"):
        parent = folder[: -len("/views")]
        allowed = rules_of(parent) | {parent}
        # Windows are made of the controls of the folders below.
        return allowed | {f + "/views" for f in allowed}
    return MAY_INCLUDE.get(folder)


def resolve(root, including, target):
    for base in (os.path.dirname(including), os.path.join(root, "src"), os.path.join(root, "qmcad")):
        path = os.path.normpath(os.path.join(base, target))
        if os.path.isfile(path):
            return path
    return None


def check(root):
    errors = []
    graph = {}
    for top in ("src", "qmcad"):
        for path in sources(root, top):
            rel = os.path.relpath(path, os.path.join(root, top))
            folder = os.path.dirname(rel)
            text = open(path, encoding="utf8").read()
            graph[path] = []
            for line in text.splitlines():
                match = INCLUDE.match(line)
                if not match:
                    continue
                target = resolve(root, path, match.group(1))
                if not target:
                    continue
                graph[path].append(target)
                inc_top = os.path.relpath(target, root).split(os.sep)[0]
                inc_folder = os.path.dirname(os.path.relpath(target, os.path.join(root, inc_top)))
                if top == "qmcad":
                    if inc_top == "src" and inc_folder not in HOST | BASE:
                        errors.append(f"{path}: the host includes the module's {match.group(1)}")
                    continue
                if inc_top == "qmcad":
                    errors.append(f"{path}: the module includes the host's {match.group(1)}")
                    continue
                allowed = rules_of(folder)
                if allowed is None:
                    errors.append(f"{path}: folder {folder} has no rule in the architecture")
                elif inc_folder != folder and inc_folder not in allowed:
                    errors.append(f"{path}: {folder} may not include {match.group(1)}")
            if not (top == "src" and folder == "base") and BASE_ONLY_CALLS.search(text):
                errors.append(f"{path}: environment or clock read outside base")
    errors += cycles(graph)
    return errors


def cycles(graph):
    found, state = [], {}

    def visit(node, stack):
        state[node] = 1
        stack.append(node)
        for nxt in graph.get(node, []):
            if state.get(nxt) == 1:
                found.append("include cycle: " + " -> ".join(stack[stack.index(nxt):] + [nxt]))
            elif nxt not in state:
                visit(nxt, stack)
        stack.pop()
        state[node] = 2

    for node in sorted(graph):
        if node not in state:
            visit(node, [])
    return found


if __name__ == "__main__":
    problems = check(sys.argv[1])
    for problem in problems:
        print(problem)
    sys.exit(1 if problems else 0)
