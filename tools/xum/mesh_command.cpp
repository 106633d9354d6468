#include "commands.h"

#include "mesh_import.h"
#include "mesh_info.h"
#include "report.h"

#include <CLI/CLI.hpp>

#include <cmath>
#include <limits>
#include <memory>

namespace {

/// Of a number above 0 that a float can hold.
const CLI::Validator& positiveFloat()
{
    static const CLI::Validator validator(
        [](const std::string& text) {
            float value = 0;
            const bool isGood = CLI::detail::lexical_cast(text, value) && std::isfinite(value) && value > 0;
            return isGood ? std::string() : "\"" + text + "\" is no number above 0";
        },
        "");
    return validator;
}

void addImport(CLI::App& mesh)
{
    const auto order = std::make_shared<MeshImport>();
    const auto up = std::make_shared<std::string>("y");
    CLI::App* command = mesh.add_subcommand("import", "Make a mesh file of a model");
    command->add_option("MODEL", order->model, "An OBJ file (.obj) or a glTF 2 file (.gltf, .glb)")
        ->required()
        ->type_name("");
    command->add_option("MESH", order->mesh, "The mesh file to write; an old one is replaced")
        ->required()
        ->type_name("");
    command->add_option("--up", *up, "The axis that points up in the model: y, as is usual, or z, as in the engine")
        ->type_name("AXIS")
        ->check(CLI::IsMember({"y", "z"}));
    command->add_option("--scale", order->scale, "Multiply all positions by FACTOR")
        ->type_name("FACTOR")
        ->check(positiveFloat());
    const auto leaveOutCoordinates = [order] { order->hasTextureCoordinates = false; };
    command->add_flag_callback("--no-texture-coordinates", leaveOutCoordinates, "Leave the texture coordinates out");
    command->footer(
        "All objects become one mesh. Normals, materials, skins and animations are left out. With y up, the "
        "position x y z\nbecomes x -z y.\n"
        "Exit status: 0 when the mesh is written, 1 when the model cannot be imported (an old mesh stays), "
        "2 for wrong usage.");
    command->callback([order, up] {
        order->isYUp = *up == "y";
        if (!importMesh(*order)) throw CLI::RuntimeError(exitFailure);
    });
}

void addInfo(CLI::App& mesh)
{
    const auto path = std::make_shared<std::string>();
    CLI::App* info = mesh.add_subcommand("info", "Print what a mesh file holds, and what is odd about it");
    info->add_option("MESH", *path, "The mesh file")->required()->type_name("");
    info->footer(
        "A surface is closed when each edge belongs to two triangles or more. Positions in the same place count "
        "as one for this.\n"
        "Exit status: 0 for a mesh, odd or not, 1 for a broken file, 2 for wrong usage.");
    info->callback([path] {
        if (!printMeshInfo(*path)) throw CLI::RuntimeError(exitFailure);
    });
}

void addSphere(CLI::App& mesh)
{
    struct Options {
        int subdivisions = 0;
        float radius = 1;
        std::string mesh;
    };
    const auto options = std::make_shared<Options>();
    CLI::App* sphere = mesh.add_subcommand("sphere", "Make the mesh file of a sphere around the origin");
    sphere
        ->add_option("SUBDIVISIONS", options->subdivisions,
                     "How often the triangles of an octahedron are split into four: 0 to 12")
        ->required()
        ->type_name("")
        ->check(CLI::Range(0, 12).description(""));
    sphere->add_option("RADIUS", options->radius, "Above 0")->required()->type_name("")->check(positiveFloat());
    sphere->add_option("MESH", options->mesh, "The mesh file to write; an old one is replaced")
        ->required()
        ->type_name("");
    sphere->footer("Exit status: 0 when the mesh is written, 1 when it cannot be, 2 for wrong usage.");
    sphere->callback([options] {
        if (!writeSphere(options->subdivisions, options->radius, options->mesh)) throw CLI::RuntimeError(exitFailure);
    });
}

} // namespace

void addMeshCommand(CLI::App& app)
{
    CLI::App* mesh = app.add_subcommand("mesh", "Import models, look into mesh files, make spheres");
    mesh->require_subcommand(0, 1);
    addImport(*mesh);
    addInfo(*mesh);
    addSphere(*mesh);
    mesh->footer("Exit status: 0 when all went well, 1 for a file that failed, 2 for wrong usage.");
    mesh->callback([&app, mesh] {
        if (!mesh->get_subcommands().empty()) return;
        report(app.help()); // that of the chosen subcommand, with the program's name
        throw CLI::RuntimeError(exitWrongUsage);
    });
}
