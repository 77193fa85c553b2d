# SPDX-License-Identifier: MIT
"""Random calls in random sequences: any function, good and odd arguments, and what earlier calls
returned. Outcomes are judged like the sweep's. A seed makes one sequence; replay it with

    build/bin/quilhost --python tests/across/hostile/random_calls.py -- --seed N --calls M [--null-host]
"""
import argparse
import gc
import random
import sys

import calls
import corpus
import rows
from corpus import Item
from goods import FILLED, Goods, may_call, owns

POOL_SIZE = 150
NUMBERS = (0, 1, 2, 3, 4, 7, 0.5, 255, -1, 1000)
# What the host cannot check: how long the memory is that it is told to read.
TRUSTED = {
    'ZRenderView_updatePixels': 'as many pixels as the region has',
}


class Result(Item):
    """What a call returned. A host object may change what it is in other words."""

    @staticmethod
    def fact(kind):
        def look(item):
            try:
                kind(item.value)
            except Exception:
                return False
            return True
        return property(look, lambda item, value: None)


Result.truth, Result.text = Result.fact(bool), Result.fact(unicode)


class Sequence(object):
    def __init__(self, options):
        self.random = random.Random(options.seed)
        self.journal = calls.Journal(options.journal)
        self.goods = Goods()
        self.odd = corpus.corpus()
        self.filled = [item for name in FILLED for item in self.goods.filled(name)]
        self.pool = []
        self.stored = set()  # what members may point to from now on
        self.made = self.held_back = self.succeeded = 0
        table = [row for row in rows.read_rows()
                 if not row.is_protocol and (row.null_host or row.name not in TRUSTED)]
        others = [row for row in table if not row.name.startswith('ZGLFunctionTable_')]
        self.rows = table + 3 * others

    def item(self, declared):
        chance = self.random.random()
        if rows.is_pointer(declared) and chance < 0.5:
            record = rows.harness.mangled(rows.pointee(declared))
            known = [item for item in self.pool + self.filled if item.record == record]
            if known:
                return self.random.choice(known)
        if chance < 0.8:
            if rows.native_of(declared) in rows.NUMBERS:
                value = self.random.choice(NUMBERS)
                return Item(repr(value), value)
            return self.goods.keep(declared)
        if self.pool and chance < 0.9:
            return self.random.choice(self.pool)
        return self.random.choice(self.odd)

    def step(self):
        """One call, or none if no host would survive it."""
        row = self.random.choice(self.rows)
        least, most, types = self.random.choice(row.cases)
        items = [self.item(declared) for declared in types[:self.random.randint(least, most)]]
        expected = rows.expectations(row, items)
        is_call = any(e is None or rows.goes_on(e) for e in expected)
        if is_call and (row.is_destructor and not self.take(items[0]) or
                        not row.is_destructor and not may_call(row, items, self.goods)):
            self.held_back += 1
            return
        self.journal.write('%s(%s)' % (row.name, ', '.join(item.label for item in items)))
        result, error = calls.attempt(row.function, [item.value for item in items])
        self.made += 1
        self.succeeded += error is None
        fault = calls.judge(row, expected, result, error)
        if fault:
            raise AssertionError('call %d, %s: %s' % (self.journal.count - 1, row.name, fault))
        if row.name.endswith('_set'):
            for item in items:
                if isinstance(item, Result):
                    self.stored |= item.needs | {item}
        if result is not calls.NOTHING and result is not None:
            self.keep(row, result, items)

    def take(self, item):
        """Takes what is to be deleted out of the pool; false where it is not ours to delete."""
        if item.null:
            return True
        if item not in self.pool or item in self.stored or any(
                item in other.needs for other in self.pool):
            return False
        if not owns(item.value):
            return False
        self.pool.remove(item)
        return True

    def keep(self, row, result, items):
        """A result may point into any argument, or know one: those stay as long as it does."""
        record = calls.record_of(result)
        if not record and self.random.random() < 0.9:
            return
        item = Result('<%d: %s>' % (self.journal.count - 1, row.name), result,
                      dangling=record == '_p_void')
        item.record = record
        item.needs = set(i for i in items if isinstance(i, Result))
        item.needs.update(*[i.needs for i in item.needs])
        if len(item.needs) > 20:
            return
        if len(self.pool) == POOL_SIZE:
            self.pool.pop(self.random.randrange(POOL_SIZE))
        self.pool.append(item)

    def run(self, count):
        while self.made < count:
            self.step()
            if self.made % 5000 == 0:
                gc.collect()


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument('--seed', type=int, default=1)
    parser.add_argument('--calls', type=int, default=20000)
    parser.add_argument('--null-host', action='store_true', help='the host does nothing')
    parser.add_argument('--journal', help='of the child process')
    options = parser.parse_args()
    if not options.journal:
        status = calls.supervise(__file__, ['--seed', str(options.seed), '--calls',
                                            str(options.calls)], options.null_host)
        return status and 'failed with --seed %d' % options.seed
    sequence = Sequence(options)
    sequence.run(options.calls)
    calls.leave()
    print '%d calls, %d succeeded, %d held back' % (
        sequence.made, sequence.succeeded, sequence.held_back)


if __name__ == '__main__':
    sys.exit(main())
