# SPDX-License-Identifier: MIT
"""The page of what the reference says of the development host."""
import re

HEAD = '''The development host, by function
=================================

What the reference says of the development host, function by function;
:doc:`/guides/development_host` has the whole.

.. list-table::
   :class: overview

'''


def write_development_host(generators, linker, folder):
    """Function by function."""
    rows = []
    for companion in generators:
        for target in companion.module.classes.values():
            found = companion.header_classes[target.name]
            texts = [('', found.doc)]
            for function in target.functions:
                texts.append((function['member'], companion.signatures.text(function)))
            texts += [(name, companion.member_text(target, name)) for name in target.getters]
            for member, text in texts:
                said = [s for s in re.split(r'(?<=[.])\s+', ' '.join(text.split()))
                        if 'development host' in s]
                name = '.'.join(filter(None, [target.name, member]))
                if said:
                    rows.append('   * - :py:obj:`%s <%s.%s>`\n     - %s' % (
                        name, companion.module.name, name,
                        linker.prose(' '.join(said), target.name)))
    (folder / 'development_host.rst').write_text(HEAD + '\n'.join(rows) + '\n')
