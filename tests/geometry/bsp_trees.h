#pragma once

#include <xum/geometry/brush.h>
#include <xum/geometry/bsp.h>
#include <xum/geometry/bsp_mesh.h>
#include <xum/geometry/bsp_node.h>
#include <xum/geometry/polygon.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <deque>
#include <memory>
#include <random>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

/// The brushes and polygons of trees that a host builds. They stay the host's.
class HostContents {
public:
    Brush* addBrush(const std::vector<Plane<float>>& planes = {}, unsigned char kind = 0)
    {
        return &brushes.emplace_back(planes, kind);
    }

    Polygon* addPolygon(const std::vector<Vertex>& vertices = {}) { return &polygons.emplace_back(vertices); }

private:
    std::deque<Brush> brushes;
    std::deque<Polygon> polygons;
};

inline BSPNode* makeLeaf(bool kind = false, const std::vector<Brush*>& brushes = {},
                         const std::vector<Polygon*>& polygons = {})
{
    return new BSPNode(kind, brushes, polygons);
}

/// A mesh in no list, with a tree of these nodes.
inline std::unique_ptr<BSPMesh> makeMesh(BSPNode* root, const Vector3<float>& origin = {})
{
    return std::make_unique<BSPMesh>(origin, new BSP(root));
}

/// The shape of a tree: an inner node as its children in brackets, front first, a leaf as its kind, the kinds of its
/// brushes and the vertex counts of its polygons. For trees of a few levels.
inline std::string describeTree(const BSPNode* node)
{
    if (node == nullptr) return "null";
    if (const BSPNodeContentNode* inner = node->getNode())
        return "(" + describeTree(inner->front) + " " + describeTree(inner->back) + ")";
    std::string text = node->getLeaf()->kind ? "true" : "false";
    for (const Brush* brush : node->getLeaf()->brushes) text += " b" + std::to_string(brush->kind);
    for (const Polygon* polygon : node->getLeaf()->polygons) text += " p" + std::to_string(polygon->vertices.size());
    return text;
}

/// "null" for no mesh.
inline std::string describeMesh(const BSPMesh* mesh)
{
    return mesh != nullptr ? describeTree(mesh->getBSP()->getRoot()) : "null";
}

template <class Value>
bool areSameBytes(const std::vector<Value>& a, const std::vector<Value>& b)
{
    return a.size() == b.size() && (a.empty() || std::memcmp(a.data(), b.data(), a.size() * sizeof(Value)) == 0);
}

/// Compares all that a file holds. Brushes must be shared in one tree as they are in the other, and no brush or polygon
/// may belong to both. The words and tags are not looked at. Empty when the trees are the same.
inline std::string differenceOfTrees(const BSPNode* first, const BSPNode* second)
{
    std::unordered_map<const Brush*, const Brush*> partners;
    std::unordered_map<const Brush*, const Brush*> partnersBack;
    std::vector<std::pair<const BSPNode*, const BSPNode*>> pending = {{first, second}};
    while (!pending.empty()) {
        const auto [a, b] = pending.back();
        pending.pop_back();
        if (a == nullptr || b == nullptr || a == b || a->isLeaf() != b->isLeaf()) return "nodes";
        if (const BSPNodeContentNode* inner = a->getNode()) {
            if (std::memcmp(&inner->plane, &b->getNode()->plane, sizeof inner->plane) != 0) return "planes of nodes";
            pending.emplace_back(inner->front, b->getNode()->front);
            pending.emplace_back(inner->back, b->getNode()->back);
            continue;
        }
        const BSPNodeContentLeaf& leafA = *a->getLeaf();
        const BSPNodeContentLeaf& leafB = *b->getLeaf();
        if (leafA.kind != leafB.kind) return "kinds of leaves";
        if (leafA.brushes.size() != leafB.brushes.size()) return "brush counts";
        for (std::size_t i = 0; i < leafA.brushes.size(); ++i) {
            const Brush* const brushA = leafA.brushes[i];
            const Brush* const brushB = leafB.brushes[i];
            if (brushA == brushB) return "one brush in both";
            if (partners.emplace(brushA, brushB).first->second != brushB) return "sharing of brushes";
            if (partnersBack.emplace(brushB, brushA).first->second != brushA) return "sharing of brushes";
            if (brushA->kind != brushB->kind) return "kinds of brushes";
            if (!areSameBytes(brushA->planes, brushB->planes)) return "planes of brushes";
        }
        if (leafA.polygons.size() != leafB.polygons.size()) return "polygon counts";
        for (std::size_t i = 0; i < leafA.polygons.size(); ++i) {
            if (leafA.polygons[i] == leafB.polygons[i]) return "one polygon in both";
            if (!areSameBytes(leafA.polygons[i]->vertices, leafB.polygons[i]->vertices)) return "vertices";
        }
    }
    return "";
}

/// Trees of any shape, the same for the same seed. Planes and vertices have coordinates that are multiples of 1/4 and
/// small, so that products of them are exact in single precision.
class RandomTrees {
public:
    explicit RandomTrees(unsigned seed) : engine(seed) {}

    /// Built of `innerNodes` inner nodes; leaves choose among brushes of the whole tree.
    BSPNode* makeTree(HostContents& contents, int innerNodes)
    {
        std::vector<Brush*> brushes;
        for (int i = 0; i < 1 + innerNodes / 2; ++i) {
            std::vector<Plane<float>> planes(pick(7));
            for (Plane<float>& plane : planes) plane = makePlane();
            brushes.push_back(contents.addBrush(planes, static_cast<unsigned char>(pick(256))));
        }
        std::vector<BSPNode**> places; // of leaves that can still become inner nodes
        BSPNode* root = nullptr;
        places.push_back(&root);
        for (int i = 0; i < innerNodes; ++i) {
            std::swap(places[pick(places.size())], places.back());
            BSPNode** const place = places.back();
            places.pop_back();
            *place = new BSPNode(makePlane(), nullptr, nullptr);
            places.push_back(&(*place)->getNode()->front);
            places.push_back(&(*place)->getNode()->back);
        }
        for (BSPNode** place : places) *place = makeFilledLeaf(contents, brushes);
        return root;
    }

    /// Between -8 and 8 in steps of 1/4.
    float makeCoordinate() { return static_cast<float>(static_cast<int>(pick(65)) - 32) / 4.0f; }

    Vector3<float> makePoint()
    {
        const float x = makeCoordinate();
        const float y = makeCoordinate();
        return {x, y, makeCoordinate()};
    }

    Plane<float> makePlane()
    {
        const Vector3<float> normal = makePoint();
        return {normal, makeCoordinate()};
    }

    /// From 0 to count - 1. Not by a distribution: each library has its own.
    std::size_t pick(std::size_t count) { return engine() % count; }

private:
    BSPNode* makeFilledLeaf(HostContents& contents, const std::vector<Brush*>& brushes)
    {
        std::vector<Brush*> used(pick(4));
        for (Brush*& brush : used) brush = brushes[pick(brushes.size())];
        std::vector<Polygon*> polygons(pick(3));
        for (Polygon*& polygon : polygons) {
            std::vector<Vertex> vertices(pick(6));
            for (Vertex& vertex : vertices) {
                const Vector3<float> position = makePoint();
                const float u = makeCoordinate();
                vertex = {position, {u, makeCoordinate()}};
            }
            polygon = contents.addPolygon(vertices);
        }
        return makeLeaf(pick(2) != 0, used, polygons);
    }

    std::mt19937 engine;
};
