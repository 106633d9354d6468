#include "lit_scene_fixture.h"

#include <xum/geometry/mesh.h>

#include <memory>
#include <vector>

namespace {

const std::string vertexSource = R"(#version 150
in vec3 position;
in vec3 normal;
uniform vec3 offset;
uniform mat4 matrix;
out vec3 worldPosition;
out vec3 worldNormal;
void main()
{
    worldPosition = position + offset;
    worldNormal = normal;
    gl_Position = vec4(worldPosition, 1.0) * matrix;
}
)";

const std::string surfaceSource = R"(#version 150
in vec3 worldPosition;
in vec3 worldNormal;
uniform vec4 color;
out vec4 outputPosition;
out vec4 outputNormal;
out vec4 outputColor;
void main()
{
    outputPosition = vec4(worldPosition, 1.0);
    outputNormal = vec4(normalize(worldNormal), 0.0);
    outputColor = color;
}
)";

const std::string lightSource = R"(#version 150
uniform sampler2D positions;
uniform sampler2D normals;
uniform sampler2D colors;
uniform sampler2D shadowMap;
uniform mat4 lightMatrix;
uniform vec3 lightPosition;
uniform vec3 lightDirection;
uniform vec3 lightColor;
uniform float innerCosine;
uniform float outerCosine;
out vec4 outputColor;
void main()
{
    ivec2 pixel = ivec2(gl_FragCoord.xy);
    vec4 position = texelFetch(positions, pixel, 0);
    vec4 inLight = vec4(position.xyz, 1.0) * lightMatrix;
    vec3 inMap = inLight.xyz / inLight.w * 0.5 + 0.5;
    float isSeen = step(inMap.z - 0.0002, texture(shadowMap, inMap.xy).r);
    vec3 fromLight = normalize(position.xyz - lightPosition);
    float cone = smoothstep(outerCosine, innerCosine, dot(fromLight, lightDirection));
    float brightness = max(0.0, -dot(fromLight, texelFetch(normals, pixel, 0).xyz)) * cone * isSeen;
    outputColor = vec4(texelFetch(colors, pixel, 0).rgb * lightColor * brightness, 1.0);
}
)";

} // namespace

void LitSceneTest::SetUp()
{
    DrawingTest::SetUp();
    makeScene();
    makePrograms();
    drawSurfaces();
    shadowMap = device->createRenderTarget(shadowMapSize, shadowMapSize, {depth32});
    atEnd([this] { device->destroyRenderTarget(shadowMap); });
    makeCanvas(canvasSize, canvasSize);
}

void LitSceneTest::makeScene()
{
    const float s = lit_scene::floorSize;
    floor = makeBuffer();
    floor->setAttribute(VertexAttribute::Position,
                        std::vector<Vector3<float>>{{-s, -s, 0}, {s, -s, 0}, {s, s, 0}, {-s, s, 0}});
    floor->setAttribute(VertexAttribute::Normal, std::vector<Vector3<float>>(4, {0, 0, 1}));
    makeBox();
    const std::unique_ptr<Mesh> mesh(createSphereMesh(4, lit_scene::sphereRadius));
    sphere = mesh->createVertexBuffer(device);
    atEnd([this] { device->destroyVertexBuffer(sphere); });
}

/// Six sides of two triangles, counter-clockwise from outside.
void LitSceneTest::makeBox()
{
    std::vector<Vector3<float>> positions;
    std::vector<Vector3<float>> normals;
    const Vector3<float> middle = (lit_scene::box.minimum + lit_scene::box.maximum) / 2;
    const Vector3<float> half = (lit_scene::box.maximum - lit_scene::box.minimum) / 2;
    const Vector3<float> axes[] = {{half.x, 0, 0}, {0, half.y, 0}, {0, 0, half.z}};
    for (int side = 0; side < 6; ++side) {
        const Vector3<float> out = axes[side / 2] * (side % 2 == 0 ? 1.0f : -1.0f);
        const Vector3<float> a = axes[(side / 2 + 1) % 3];
        const Vector3<float> b = axes[(side / 2 + 2) % 3] * (side % 2 == 0 ? 1.0f : -1.0f);
        for (const Vector3<float>& corner : {-a - b, a - b, a + b, a + b, b - a, -a - b}) {
            positions.push_back(middle + out + corner);
            normals.push_back(PointOfView::normalized(out));
        }
    }
    box = makeBuffer();
    box->setAttribute(VertexAttribute::Position, positions);
    box->setAttribute(VertexAttribute::Normal, normals);
}

void LitSceneTest::makePrograms()
{
    depthProgram = makeProgram(vertexSource, "#version 150\nvoid main() {}\n", {});
    surfaceProgram = makeProgram(vertexSource, surfaceSource, {"outputPosition", "outputNormal", "outputColor"});
    colorProgram = makeProgram(vertexSource, "#version 150\n"
                                             "uniform vec4 color;\n"
                                             "out vec4 outputColor;\n"
                                             "void main() { outputColor = color; }\n");
    lightProgram = makeProgram(plainVertexSource, lightSource);
}

void LitSceneTest::drawScene(const Matrix4<float>& matrix)
{
    device->setUniform("matrix", matrix);
    device->setUniform("offset", Vector3<float>()).setUniform("color", colorOf(lit_scene::floorColor));
    floor->drawTriangleFan();
    device->setUniform("color", colorOf(lit_scene::boxColor));
    box->drawTriangles();
    device->setUniform("color", colorOf(lit_scene::sphereColor));
    device->setUniform("offset", lit_scene::sphereCenter);
    sphere->drawTriangles();
}

void LitSceneTest::drawSurfaces()
{
    constexpr TextureFormat floats{TextureFormat::Float, 4};
    makeCanvas(canvasSize, canvasSize, {floats, floats, rgba8, depth32});
    surfaces = canvas;
    device->enable(RenderFeature::DepthTest);
    device->useProgram(surfaceProgram);
    drawScene(view.getMatrix());
    device->disable(RenderFeature::DepthTest);
}

void LitSceneTest::shine(SpotLight& light)
{
    Matrix4<float> matrix;
    device->bindRenderTarget(shadowMap, TargetBinding::Both);
    device->setViewport(0, 0, shadowMapSize, shadowMapSize, shadowMapSize);
    device->clear(false, true, false);
    device->enable(RenderFeature::DepthTest);
    device->useProgram(depthProgram);
    light.generateShadowMap(device, [&](const Matrix4<float>& viewProjection) {
        matrix = viewProjection;
        drawScene(viewProjection);
    });
    device->disable(RenderFeature::DepthTest);

    device->bindRenderTarget(canvas, TargetBinding::Both);
    device->setViewport(0, 0, canvasSize, canvasSize, canvasSize);
    device->useProgram(lightProgram);
    device->setUniform("offset", Vector3<float>());
    device->setUniform("positions", 0).setUniform("normals", 1).setUniform("colors", 2).setUniform("shadowMap", 3);
    device->setUniform("lightMatrix", matrix).setUniform("lightPosition", light.position);
    device->setUniform("lightDirection", PointOfView::normalized(light.direction));
    device->setUniform("lightColor", light.color);
    device->setUniform("innerCosine", light.innerCosine).setUniform("outerCosine", light.outerCosine);
    for (int unit = 0; unit < 3; ++unit) device->bindTexture(unit, surfaces->getTexture(unit));
    device->bindTexture(3, shadowMap->getDepthTexture());
    device->setBlendMode(BlendMode::Additive);
    light.draw(device);
    device->setBlendMode(BlendMode::None);
}

Pixel LitSceneTest::pixelOf(const Image& picture, const PointOfView& from, const Vector3<float>& point)
{
    const Vector2<float> place = from.project(point);
    return picture.getPixel(static_cast<int>(place.x), static_cast<int>(place.y));
}
