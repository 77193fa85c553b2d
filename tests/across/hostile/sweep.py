# SPDX-License-Identifier: MIT
"""Every function, at every argument position, with every odd object; the other arguments are good.
What is raised is exactly what the declared type says, results are null exactly when an exception
is set, and no reference is lost or gained."""
import argparse
import sys

import calls
import corpus
import rows
from calls import attempt, judge
from corpus import Item
from goods import Goods, OpenQuilRender, may_call

MOST_FAULTS = 40


def is_shared(value):
    """What the interpreter itself refers to all the time. An empty text may be the result that a
    failed call abandons."""
    return value is None or type(value) is int and -6 < value < 257 or type(value) is unicode and (
        not value)


def proxy_method(row):
    """What the proxy class has for a function, where that is a native method; else None. Those of
    callbacks look at the instance themselves."""
    owner, _, member = row.name.partition('_')
    methods = vars(getattr(OpenQuilRender, owner, object))
    method = None if '__disown__' in methods else methods.get(member)
    if isinstance(method, staticmethod):
        method = method.__get__(None, object)
    return method if type(method).__name__ == 'Method' else None


class Sweep(object):
    def __init__(self, options):
        self.proxies = options.proxies
        self.journal = calls.Journal(options.journal)
        self.goods = Goods()
        self.items = corpus.corpus()[::options.stride]
        self.part, self.parts = options.part
        self.made = self.held_back = 0
        self.faults = []
        self.suited = {}

    def run(self):
        table = sorted(rows.read_rows(), key=lambda row: row.is_protocol)
        if self.proxies:
            table = [row for row in table if proxy_method(row)]
            assert len(table) > 1000
        table = table[self.part::self.parts]
        for row in table:
            if self.proxies:
                row.function = proxy_method(row)
            else:
                self.wrong_counts(row)
            for least, most, types in row.cases:
                for position in range(most):
                    for item in self.items_for(row, types[position]):
                        self.one(row, types, position, item)
            if row.name.endswith('_swigregister'):
                row.function(getattr(OpenQuilRender, row.name[:-len('_swigregister')]))
        return len(table)

    def items_for(self, row, declared):
        """The odd objects, and those that suit the declared type: good, null, behind another."""
        if not rows.is_pointer(declared):
            return self.items
        name = rows.pointee(declared)
        kind = row.is_destructor and row.name or name
        if kind not in self.suited:
            good, behind = self.goods.make(declared), self.goods.make(declared)
            chain = rows.harness.placeholder('RV_AOV' if name != 'RV_AOV' else 'RV_PIXEL')
            chain.append(getattr(behind, 'this', behind))
            suited = [Item('good one', good, record=name), Item('chained', chain, record=name),
                      Item('null', rows.harness.pointer(name, 0), record=name, null=True)]
            suited += self.goods.filled(name)
            for item in suited:
                item.expendable = row.is_destructor
            self.suited[kind] = self.items + suited
        return self.suited[kind]

    def wrong_counts(self, row):
        for count in range(row.most + 3) + [39]:
            expected = row.count_error(count)
            if expected:
                self.journal.write('%s with %d arguments' % (row.name, count))
                result, error = attempt(row.function, [None] * count)
                said = type(error), str(error)[:len(expected[1])] if (
                    len(row.cases) > 1) else str(error)
                self.count(row, result is calls.NOTHING and said == expected, (), repr(error))

    def one(self, row, types, position, item):
        keep = self.goods.item if row.is_destructor or row.is_protocol else self.goods.keep
        items = [keep(declared) for declared in types]
        items[position] = item
        if types[position] == 'list' and type(item.value) is list:
            items[position] = item = Item(item.label, list(item.value))  # it is filled with names
        expected = rows.expectations(row, items)
        if any(e is None or rows.goes_on(e) for e in expected) and (
                not may_call(row, items, self.goods)):
            self.held_back += 1
            return
        arguments = [i.value for i in items]
        counted = [a for a in arguments if not is_shared(a)]
        self.journal.write('%s(%s)' % (row.name, ', '.join(i.label for i in items)))
        before = map(sys.getrefcount, counted)
        result, error = attempt(row.function, arguments)
        fault = judge(row, expected, result, error)
        del result, error
        self.count(row, not fault, items, fault)
        after = map(sys.getrefcount, counted)
        if after != before and not row.is_protocol:
            self.count(row, False, items, 'references: %r, before %r' % (after, before))

    def count(self, row, right, items, text):
        self.made += 1
        if not right:
            self.faults.append('%s(%s): %s' % (row.name, ', '.join(i.label for i in items), text))
            if len(self.faults) == MOST_FAULTS:
                raise SystemExit('\n'.join(self.faults + ['too many faults']))


def child(options):
    sweep = Sweep(options)
    count = sweep.run()
    calls.leave()
    print '%d functions, %d odd objects: %d calls, %d held back, %d faults' % (
        count, len(sweep.items), sweep.made, sweep.held_back, len(sweep.faults))
    return '\n'.join(sweep.faults) or 0


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument('--null-host', action='store_true', help='the host does nothing')
    parser.add_argument('--proxies', action='store_true', help='through the proxy classes')
    parser.add_argument('--stride', type=int, default=1, help='use every n-th odd object')
    parser.add_argument('--part', type=int, nargs=2, default=(0, 1), metavar=('I', 'N'),
                        help='every N-th function, from the I-th on')
    parser.add_argument('--journal', help='of the child process')
    options = parser.parse_args()
    if options.journal:
        return child(options)
    chosen = ['--stride', options.stride, '--part'] + list(options.part)
    chosen += ['--proxies'] * options.proxies
    return calls.supervise(__file__, map(str, chosen), options.null_host)


if __name__ == '__main__':
    sys.exit(main())
