#pragma once

class MaterialManager;
class Node;
class Package;
class World;

// Builds the document tree of a .world file: header, render settings, materials, then nodes, every
// field in a fixed order, so that saving the same world twice gives the same bytes.
class WorldWriter {
public:
    // Fills root (made an object) with the world and the materials.
    static void write(const World& world, const MaterialManager& materials, Package& root);

private:
    static void write_render(const World& world, Package& root);
    static void write_materials(const MaterialManager& materials, Package& root);
    static void write_node(const Node& node, Package& list);
};
