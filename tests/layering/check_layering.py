# Fails on any #include in src/ that goes up a floor or across the rooms of
# one floor of src/floors.txt, naming the file and line.
import os, re, sys

src = sys.argv[1]
floor = {}
for line in open(os.path.join(src, "floors.txt")):
    words = line.split("#")[0].split()
    floor.update(dict.fromkeys(words, len(set(floor.values()))))
include = re.compile(r'\s*#\s*include\s+"(([^"/]+)/[^"]*)"')  # the whole path, and its room
faults = 0
for folder, _, names in sorted(os.walk(src)):
    for name in sorted(n for n in names if n.endswith((".h", ".cpp", ".rc"))):
        path = os.path.join(folder, name)
        room = os.path.relpath(path, src).split(os.sep)[0]
        for number, text in enumerate(open(path, errors="replace"), 1):
            m = include.match(text)
            if not m or m[2] == room or not os.path.isdir(os.path.join(src, m[2])):
                continue
            if room not in floor or m[2] not in floor or floor[m[2]] >= floor[room]:
                print(f"{path}:{number}: {room} may not include {m[1]}")
                faults += 1
print(f"{faults} include(s) against the floors" if faults else "every include goes down a floor")
sys.exit(1 if faults else 0)
