# SPDX-License-Identifier: MIT
"""Tells what the current render layer is made of, and lets the host render it.

    for layer in defaultRenderLayer hero background; do
        quilhost examples/scenes/layers.gltf --layer $layer --python examples/layers.py \\
            --output "<RenderLayer>.png"
    done

writes defaultRenderLayer.png, hero.png and background.png. The layers, passes and light links are
those of examples/scenes/layers.layers.json; docs/layers.md tells the form of such files.
"""
from __future__ import print_function

from OpenQuil import ZDagPath, ZDagPathArray, ZObject, ZObjectArray, ZPlug, ZSelectionList, ZString
from OpenQuilRender import (ZCommonRenderSettingsData, ZFnImageSource, ZFnRenderLayer,
                            ZFnRenderPass, ZLightLinks)

FORMATS = {1: "8-bit integers", 2: "16-bit floats", 4: "32-bit floats"}


def nodes_of(type_name):
    """The nodes of a type; none is an error for the host."""
    found = ZSelectionList()
    try:
        found.addNodesOfType(type_name)
    except RuntimeError:
        return []
    nodes = []
    for i in range(len(found)):
        node = ZObject()
        found.getDependNode(i, node)
        nodes.append(node)
    return nodes


def path_to(node):
    path = ZDagPath()
    ZDagPath.getAPathTo(node, path)
    return path


def name_of(node):
    return path_to(node).fullPathName()


def tell_members(layer):
    members = ZObjectArray()
    layer.listMembers(members)
    print("members:", ", ".join(name_of(node) for node in members))
    for node, attribute in [(node, "diffuse") for node in nodes_of("material")] + [
            (node, "intensity") for node in nodes_of("light")]:
        plug = ZPlug(node, attribute)
        if layer.isPlugAdjusted(plug):
            adjusted = layer.adjustmentPlug(plug)
            value = adjusted.asVector() if attribute == "diffuse" else adjusted.asDouble()
            print("adjusts:", plug.name(), "to", value)


def tell_passes(layer):
    passes = ZObjectArray()
    layer.externalRenderPasses(passes)
    for node in passes:
        render_pass = ZFnRenderPass(node)
        shown = [name_of(mesh) for mesh in nodes_of("mesh")
                 if layer.passHasObject(node, path_to(mesh))]
        print("pass %s: %d channels of %s, shows %s" % (
            render_pass.passID(), render_pass.frameBufferChannels(),
            FORMATS[render_pass.frameBufferType()[0]], ", ".join(shown)))


def tell_links():
    links = ZLightLinks()
    links.parseLinks()
    none = ZObject()
    for mesh in nodes_of("mesh"):
        path = path_to(mesh)
        if not ZFnRenderLayer().inCurrentRenderLayer(path):
            continue
        lights, casts = ZDagPathArray(), ZDagPathArray()
        links.getLinkedLights(path, none, lights)
        links.getShadowLinkedLights(path, none, casts)
        print("%s: lit by %s; casts shadows from %s" % (
            path.fullPathName(), " ".join(each.fullPathName() for each in lights) or "nothing",
            " ".join(each.fullPathName() for each in casts) or "nothing"))


def tell_images():
    for node in nodes_of("imageSource"):
        extension = ZString()
        name = ZFnImageSource(node).getImageName(
            ZCommonRenderSettingsData.kRelativePath, 1, "", ZObject(), ZObject(), extension)
        print("image source: %s (%s)" % (name, extension))


def main():
    current = ZFnRenderLayer(ZFnRenderLayer.currentLayer())
    tell_members(current)
    tell_passes(current)
    tell_links()
    tell_images()


main()
