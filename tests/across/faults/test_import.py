# SPDX-License-Identifier: MIT
"""Memory runs out while the module is imported, alone and into the ring of the core module: the
import raises, the next one finds a whole module, and nothing that was there before is lost.
Arguments: the distance from one allocation that fails to the next."""
import gc
import sys

import fault_host

from faults import in_child, outcome

# The module or its MemoryError; the others are the interpreter's own ways to say that it could not
# make its import lock, or note the module that is made.
EXPECTED = ('module', 'MemoryError', 'RuntimeError', 'SystemError', 'ImportError',
            'MemoryError with a result')


def attempt(after_core, nth, persistent):
    """What came of it, the number of allocations, and of the next import: names in the module."""
    gc.disable()
    if after_core:
        import OpenQuil
    call = fault_host.call(__import__, ('_OpenQuilRender',), nth, persistent)
    found, seen = outcome(call), call[-1]
    del call
    import _OpenQuilRender as render
    pixel, settings = render.new_RV_PIXEL(), render.new_ZCommonRenderSettingsData()
    render.RV_PIXEL_g_set(pixel, 0.5)
    assert render.RV_PIXEL_g_get(pixel) == 0.5
    if after_core:  # its types are shared
        render.ZCommonRenderSettingsData_name_set(settings, OpenQuil.ZString('a'))
        name = render.ZCommonRenderSettingsData_name_get(settings)
        assert type(name) is OpenQuil.ZString and name == 'a', name
    render.delete_RV_PIXEL(pixel)
    render.delete_ZCommonRenderSettingsData(settings)
    return found, seen, len(vars(render))


def main(step):
    failed = False
    for after_core in False, True:
        found, count, names = in_child(lambda: attempt(after_core, 10 ** 9, 0))
        print 'import%s: %d allocations' % (' after the core module' * after_core, count)
        # The first ones, the last ones, and some between.
        for nth in sorted(set(range(1, 40) + range(40, count, step) + range(count - 9, count + 2))):
            for persistent in 0, 1:
                result = in_child(lambda: attempt(after_core, nth, persistent))
                if not result or result[0] not in EXPECTED or result[2] != names:
                    print '   ', ('at', 'from')[persistent], nth, result or 'crash'
                    failed = True
    sys.exit(failed)


main(int(sys.argv[1]))
