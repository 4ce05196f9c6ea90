"""Whether a figure holds its bar, for the tables."""

# Rows that are known not to hold their bar everywhere: what they are held to instead, and why.
INSTEAD = {
    "LastKey/SmallFile": (1.5, "the floor is the calls of the system alone, and some processors make them in 3 us"),
    "LastKey/SmallFileOfOneSection": (1.5, "as the row above"),
    "start, shared library": (1.6, "the loader's part differs by machine; the instructions have a bar of their own"),
    "Union<CString>/100000": (2.7, "2.13 by count of steps; the caches are shared with whatever else runs"),
    "1 MiB, all origins kept; floor: the store": (1.5, "pages of memory that the system gives for 6,400 origins"),
}


def judge(work, figure, bar):
    """Whether the row may stand, and what its last column says."""
    if bar is None or figure <= bar:
        return True, "" if bar is None else "held"
    bound, reason = INSTEAD.get(work.removesuffix("/manual_time"), (bar, ""))
    return figure <= bound, f"held to {bound}: {reason}" if figure <= bound else "NOT HELD"
