# SPDX-License-Identifier: MIT
"""What came of tests as a JUnit file, which CI services show."""
import os
import re
import tempfile
from itertools import groupby
from xml.etree import ElementTree

# What XML 1.0 has no way to say.
UNFIT = re.compile(u'[^\t\n\r\x20-\ud7ff\ue000-\ufffd\U00010000-\U0010ffff]')


def fit(text):
    if isinstance(text, bytes):
        text = text.decode('utf-8', 'replace')
    return UNFIT.sub(u'?', text)


def counts(records):
    def count(outcome):
        return str(sum(record.outcome == outcome for record in records))
    return {'tests': str(len(records)), 'failures': count('failure'), 'errors': count('error'),
            'skipped': count('skipped'),
            'time': '%.3f' % sum(record.seconds for record in records)}


def add_case(suite, record):
    case = ElementTree.SubElement(suite, 'testcase', classname=fit(record.module),
                                  name=fit(record.name), time='%.3f' % record.seconds)
    if record.outcome in ('failure', 'error'):
        lines = record.text.strip().splitlines()
        ElementTree.SubElement(case, record.outcome, type=fit(record.kind),
                               message=fit(lines[-1] if lines else '')).text = fit(record.text)
    elif record.outcome == 'skipped':
        ElementTree.SubElement(case, 'skipped', message=fit(record.text))
    for name, text in ('system-out', record.out), ('system-err', record.err):
        if text:
            ElementTree.SubElement(case, name).text = fit(text)


def write_junit(path, records):
    """One suite for each module; the file appears when it is whole."""
    suites = ElementTree.Element('testsuites', counts(records))
    for module, cases in groupby(records, lambda record: record.module.split('.')[0]):
        cases = list(cases)
        suite = ElementTree.SubElement(suites, 'testsuite', dict(counts(cases), name=fit(module)))
        for record in cases:
            add_case(suite, record)
    folder, name = os.path.split(os.path.abspath(path))
    with tempfile.NamedTemporaryFile(prefix=name, dir=folder, delete=False) as file:
        ElementTree.ElementTree(suites).write(file, encoding='utf-8', xml_declaration=True)
    mask = os.umask(0)
    os.umask(mask)
    os.chmod(file.name, 0o666 & ~mask)
    os.rename(file.name, path)
