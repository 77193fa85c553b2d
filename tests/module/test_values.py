# SPDX-License-Identifier: MIT
"""Data members, with the values that cross."""
import ctypes
import unittest

import harness
from harness import module, placeholder


class HostTest(harness.Test):
    def new(self, class_name):
        """A host object for the length of the test."""
        made = getattr(module, 'new_' + class_name)()
        self.addCleanup(getattr(module, 'delete_' + class_name), made)
        return made


def floats(pointer_object, count):
    return (ctypes.c_float * count).from_address(int(pointer_object))


class Members(HostTest):
    VALUES = {  # distinct ones for the members of each type, by their place
        'float': lambda i: .25 * i, 'bool': lambda i: i % 2 == 1,
        'unsigned int': lambda i: 4000000000 + i, 'unsigned short': lambda i: 65000 + i,
        'ZRenderShadowData::LightType': lambda i: -i}
    OBJECTS = {'ZFloatVector *': 3, 'ZFloatPoint *': 4, 'ZFloatMatrix *': 16}  # sizes in floats

    def members(self, types):
        """A record of each class, and its members of the types: place, type, getter, setter."""
        records = {}
        for i, (name, _, _, _, declared) in enumerate(harness.rows()):
            if name.endswith('_set') and declared[1] in types and 'List' not in name:
                class_name = declared[0].rstrip(' *')
                if class_name not in records:
                    records[class_name] = self.new(class_name), []
                records[class_name][1].append((i, declared[1], getattr(module, name[:-4] + '_get'),
                                               getattr(module, name)))
        return records.values()

    def test_numbers_each_in_its_place(self):
        for shift in 0, 1:  # so that each truth value was both
            for record, members in self.members(self.VALUES):
                for i, kind, _, set in members:
                    self.assertIsNone(set(record, self.VALUES[kind](i + shift)))
                    self.assertIsNone(set(None, self.VALUES[kind](i)))
                for i, kind, get, _ in members:
                    value = self.VALUES[kind](i + shift)
                    self.assertEqual((type(get(record)), get(record)), (type(value), value), get)

    def test_embedded_objects_are_copied_in_and_lent_out(self):
        for record, members in self.members(self.OBJECTS):
            for i, kind, get, set in members:
                count = self.OBJECTS[kind]
                source = (ctypes.c_float * count)(*range(i, i + count))
                set(record, harness.pointer(kind.rstrip(' *'), ctypes.addressof(source)))
                lent = [getattr(each, 'this', each) for each in (get(record), get(record))]
                self.assertFalse(lent[0].own())
                self.assertNotEqual(int(lent[0]), ctypes.addressof(source))
                self.assertEqual(list(floats(lent[0], count)), list(source))
                floats(lent[0], count)[0] = -1
                self.assertEqual(floats(lent[1], count)[0], -1)

    def test_pointers_are_taken_over(self):
        for record, members in self.members(('float *', 'unsigned char *')):
            for _, kind, get, set in members:
                self.assertIsNone(get(record))
                block = placeholder(kind.rstrip(' *'))
                block.acquire()
                set(record, block)
                self.assertFalse(block.own())
                self.assertEqual((get(record), get(record).own()), (block, False))
                set(record, None)
                self.assertIsNone(get(record))

    def test_opaque_members_hold_the_address(self):
        for record, ((_, _, get, set),) in self.members(('void *',)):
            anything = object()
            set(record, anything)
            self.assertEqual(int(get(record)), id(anything))
            self.assertTrue(str(get(record)).endswith('_p_void'))
            set(record, None)
            self.assertIsNone(get(record))


if __name__ == '__main__':
    unittest.main()
