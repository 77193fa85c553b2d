// The scene: its nodes, paths, attributes, lists of these, and files.

#include "devhost/core_module/items.h"
#include "host/core/ZDagPath.h"
#include "host/core/ZFileIO.h"
#include "host/core/ZMatrix.h"
#include "host/core/ZObject.h"
#include "host/core/ZPlug.h"
#include "host/core/ZSelectionList.h"
#include "wrappers/rows/wrapper_table.h"

ROWS_BEGIN

CONSTRUCTOR_CASE(ZObject, 1, ZObject())
CONSTRUCTOR_CASE(ZObject, 2, ZObject(ZObject const &))
CONSTRUCTOR_OVERLOADS(ZObject, &new_ZObject_1, &new_ZObject_2)
METHOD(ZObject, isNull, bool() const)
METHOD(ZObject, apiTypeStr, char const *() const)
EQUALITY(ZObject)
DESTRUCTOR(ZObject)
PROXY(ZObject)

CONSTRUCTOR_CASE(ZDagPath, 1, ZDagPath())
CONSTRUCTOR_CASE(ZDagPath, 2, ZDagPath(ZDagPath const &))
CONSTRUCTOR_OVERLOADS(ZDagPath, &new_ZDagPath_1, &new_ZDagPath_2)
STATIC(ZDagPath, getAPathTo, ZStatus(ZObject const &, ZDagPath &))
METHOD(ZDagPath, isValid, bool() const)
METHOD(ZDagPath, node, ZObject() const)
METHOD(ZDagPath, fullPathName, ZString() const)
METHOD(ZDagPath, partialPathName, ZString() const)
METHOD(ZDagPath, length, unsigned int() const)
METHOD(ZDagPath, childCount, unsigned int() const)
METHOD(ZDagPath, child, ZObject(unsigned int, ZStatus *) const)
METHOD(ZDagPath, pop, ZStatus(unsigned int), 1)
METHOD(ZDagPath, push, ZStatus(ZObject const &))
METHOD(ZDagPath, inclusiveMatrix, ZMatrix() const)
METHOD(ZDagPath, exclusiveMatrix, ZMatrix() const)
STATIC(ZDagPath, className, char const *())
EQUALITY(ZDagPath)
DESTRUCTOR(ZDagPath)
PROXY(ZDagPath)

CONSTRUCTOR_CASE(ZPlug, 1, ZPlug())
CONSTRUCTOR_CASE(ZPlug, 2, ZPlug(ZPlug const &))
CONSTRUCTOR_CASE(ZPlug, 3, ZPlug(ZObject const &, ZString const &, ZStatus *))
CONSTRUCTOR_OVERLOADS(ZPlug, &new_ZPlug_1, &new_ZPlug_2, &new_ZPlug_3)
METHOD(ZPlug, isNull, bool() const)
METHOD(ZPlug, node, ZObject() const)
METHOD(ZPlug, name, ZString() const)
METHOD(ZPlug, partialName, ZString() const)
METHOD(ZPlug, asBool, bool(ZStatus *) const)
METHOD(ZPlug, asInt, int(ZStatus *) const)
METHOD(ZPlug, asFloat, float(ZStatus *) const)
METHOD(ZPlug, asDouble, double(ZStatus *) const)
METHOD(ZPlug, asString, ZString(ZStatus *) const)
METHOD(ZPlug, asVector, ZVector(ZStatus *) const)
METHOD(ZPlug, asMatrix, ZMatrix(ZStatus *) const)
METHOD(ZPlug, setBool, ZStatus(bool))
METHOD(ZPlug, setInt, ZStatus(int))
METHOD(ZPlug, setFloat, ZStatus(float))
METHOD(ZPlug, setDouble, ZStatus(double))
METHOD(ZPlug, setString, ZStatus(ZString const &))
METHOD(ZPlug, setVector, ZStatus(ZVector const &))
METHOD(ZPlug, setMatrix, ZStatus(ZMatrix const &))
STATIC(ZPlug, className, char const *())
EQUALITY(ZPlug)
DESTRUCTOR(ZPlug)
PROXY(ZPlug)

CONSTRUCTOR_CASE(ZSelectionList, 1, ZSelectionList())
CONSTRUCTOR_CASE(ZSelectionList, 2, ZSelectionList(ZSelectionList const &))
CONSTRUCTOR_OVERLOADS(ZSelectionList, &new_ZSelectionList_1, &new_ZSelectionList_2)
METHOD(ZSelectionList, length, unsigned int() const)
METHOD(ZSelectionList, isEmpty, bool() const)
METHOD(ZSelectionList, clear, ZStatus())
METHOD_CASE(ZSelectionList, add, 1, ZStatus(ZObject const &))
METHOD_CASE(ZSelectionList, add, 2, ZStatus(ZDagPath const &))
METHOD_CASE(ZSelectionList, add, 3, ZStatus(ZPlug const &))
METHOD_CASE(ZSelectionList, add, 4, ZStatus(ZString const &))
OVERLOADS(ZSelectionList, add, &ZSelectionList_add_1, &ZSelectionList_add_2, &ZSelectionList_add_3,
          &ZSelectionList_add_4)
METHOD(ZSelectionList, addNodesOfType, ZStatus(ZString const &))
METHOD(ZSelectionList, remove, ZStatus(unsigned int))
METHOD(ZSelectionList, getDependNode, ZStatus(unsigned int, ZObject &) const)
METHOD(ZSelectionList, getDagPath, ZStatus(unsigned int, ZDagPath &) const)
METHOD(ZSelectionList, getPlug, ZStatus(unsigned int, ZPlug &) const)
METHOD_CASE(ZSelectionList, getSelectionStrings, 1, ZStatus(unsigned int, ZStringArray &) const)
METHOD_CASE(ZSelectionList, getSelectionStrings, 2, ZStatus(ZStringArray &) const)
OVERLOADS(ZSelectionList, getSelectionStrings, &ZSelectionList_getSelectionStrings_1,
          &ZSelectionList_getSelectionStrings_2)
METHOD_CASE(ZSelectionList, hasItem, 1, bool(ZObject const &) const)
METHOD_CASE(ZSelectionList, hasItem, 2, bool(ZDagPath const &) const)
OVERLOADS(ZSelectionList, hasItem, &ZSelectionList_hasItem_1, &ZSelectionList_hasItem_2)
EXTENSION(
    ZSelectionList, __len__, unsigned int() const,
    +[](ZSelectionList &self) { return self.length(); })
STATIC(ZSelectionList, className, char const *())
DESTRUCTOR(ZSelectionList)
PROXY(ZSelectionList)

STATIC(ZFileIO, open, ZStatus(ZString const &))
STATIC(ZFileIO, newScene, ZStatus())
STATIC(ZFileIO, currentFile, ZString())
STATIC(ZFileIO, className, char const *())
REGISTRATION(ZFileIO)

ROWS_END(scene_rows)
