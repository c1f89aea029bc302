"""What follows from the results of a benchmark run: ratios within rounds, medians, geometric means."""

import json
import math
import statistics

OURS = "VexXml"
BASE = "pugixml"
# Operations in the order of the tables. Of the last group less is better, and nothing is timed.
TIMED = ["parse", "parse again", "first parse", "parse file", "parse and walk", "walk", "free", "write", "write file", "child path",
         "descendants", "attribute predicate", "position predicate", "validate"]
HELD = ["heap", "peak"]


def is_variant(document):
    """Whether only its line ends tell it from another one; it then has tables of its own."""
    return document.endswith("-crlf")


def mean(values):
    """The geometric mean; None of nothing."""
    return math.exp(statistics.fmean(map(math.log, values))) if values else None


class Results:
    def __init__(self, path):
        with open(path) as file:
            self.data = json.load(file)
        self.kinds = {name: kind for name, kind, _ in self.data["libraries"]}
        self.versions = {name: version for name, _, version in self.data["libraries"]}
        self.sizes = {entry["name"]: entry["bytes"] for entry in self.data["documents"]}
        self.nodes = {entry["name"]: entry["nodes"] for entry in self.data["documents"]}
        self.documents = list(self.sizes)

    def of_kind(self, *kinds):
        """Names of libraries: ours, then the base, then the others by name."""
        chosen = [name for name, kind in self.kinds.items() if kind in kinds]
        return sorted(chosen, key=lambda name: (name != OURS, name != BASE, name.lower()))

    def rounds(self, document, library, operation):
        """One number for each round; None when that was not measured."""
        return self.data["results"][document].get(library, {}).get(operation)

    def value(self, document, library, operation):
        """Seconds or bytes: the median over the rounds."""
        values = self.rounds(document, library, operation)
        return statistics.median(values) if values else None

    def ratio(self, over, under):
        """The median over the rounds of one (document, library, operation) divided by another."""
        dividends, divisors = self.rounds(*over), self.rounds(*under)
        if not dividends or not divisors:
            return None
        return statistics.median(a / b for a, b in zip(dividends, divisors))

    def speed(self, document, operation, library, base=BASE):
        """How many times as fast as the base; of memory, how many times as much."""
        ours, theirs = (document, library, operation), (document, base, operation)
        return self.ratio(ours, theirs) if operation in HELD else self.ratio(theirs, ours)

    def against_best(self, document, operation):
        """As `speed`, for ours against the best peer of each round; None without a peer."""
        peers = [self.rounds(document, peer, operation) for peer in self.of_kind("tree")]
        best = [min(values) for values in zip(*(peer for peer in peers if peer))]
        ours = self.rounds(document, OURS, operation)
        if not best or not ours:
            return None
        return statistics.median(own / theirs if operation in HELD else theirs / own for theirs, own in zip(best, ours))

    def over_documents(self, ratio, with_variants=False):
        """By document, what `ratio` gives where it gives something."""
        found = {document: ratio(document) for document in self.documents
                 if with_variants or not is_variant(document)}
        return {document: value for document, value in found.items() if value}

    def operations(self):
        """Those that were measured, in the order of the tables."""
        measured = {operation for libraries in self.data["results"].values()
                    for operations in libraries.values() for operation in operations}
        return [operation for operation in TIMED + HELD if operation in measured]
