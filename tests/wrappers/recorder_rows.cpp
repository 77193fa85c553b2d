// The recording host as a module: every shape of row that the language knows.

#include "tests/wrappers/recorder.h"
#include "wrappers/rows/module_tables.h"
#include "wrappers/rows/wrapper_table.h"

ROWS_BEGIN

STATIC(Recorder, aString, void(ZString const &))
STATIC(Recorder, chars, void(char const *))
STATIC(Recorder, aReference, void(Item &))
STATIC(Recorder, aValue, void(Item const))
STATIC(Recorder, opaque, void(void const *))
STATIC(Recorder, everything,
       void(int, unsigned int, short const, unsigned short, float, double, bool, Recorder::Kind,
            ZString const &, char const *, Item *, Item const &, Item const, void const *))
STATIC(Recorder, absent, void(int, bool, unsigned int, double, ZString const &, Item *), true, 9,
       -7, 0, 0)
STATIC(Recorder, twoStrings, void(ZString const &, ZString const &, int))
STATIC(Recorder, throws, void(Item const &, Item const, ZString const &))
STATIC(Recorder, verdict, ZStatus(int))
STATIC(Recorder, stringAndStatus, ZString(int, ZStatus *))
STATIC(Recorder, itemAndStatus, Item(ZString const &, int, ZStatus *))
STATIC(Recorder, unsignedResult, unsigned int())
STATIC(Recorder, stringResult, ZString())
STATIC(Recorder, charsResult, char const *(bool))
STATIC(Recorder, valueResult, Item())
STATIC(Recorder, pointerResult, Item *(bool))
STATIC(Recorder, referenceResult, Item const &())
STATIC(Recorder, opaqueResult, void *(void *))
METHOD(Recorder, plain, int(int))
METHOD(Recorder, constant, int() const)
METHOD(Recorder, withDefault, void(Item const &, bool) const, true)
STATIC_CASE(Recorder, byFirst, 1, void(Item const &, int, bool const), true)
STATIC_CASE(Recorder, byFirst, 2, void(ZString *, int, bool const), true)
STATIC_CASE(Recorder, byFirst, 3, void(Recorder &, int, bool const), true)
OVERLOADS(Recorder, byFirst, &Recorder_byFirst_1, &Recorder_byFirst_2, &Recorder_byFirst_3)
CONSTRUCTOR_CASE(Recorder, 1, Recorder())
CONSTRUCTOR_CASE(Recorder, 2, Recorder(int))
CONSTRUCTOR_CASE(Recorder, 3, Recorder(Item const &, ZStatus *))
CONSTRUCTOR_OVERLOADS(Recorder, &new_Recorder_1, &new_Recorder_2, &new_Recorder_3)
DESTRUCTOR(Recorder)
CONSTRUCTOR(Item, Item(int))
DESTRUCTOR(Item)
MEMBER(Item, number, int)
PROXY(Item)

ROWS_END(recorder_rows)

CONSTANTS(recorder_constants, ENUMERATOR(Recorder, kNone), ENUMERATOR(Recorder, kLow),
          ENUMERATOR(Recorder, kHigh))

static constexpr const Rows *row_tables[] = {&recorder_rows};
static constexpr const Constants *constants[] = {&recorder_constants};
constinit const std::span<const Rows *const> method_tables = row_tables;
constinit const std::span<const Constants *const> constant_tables = constants;
