#include "gl/meshDraw.h"

#define GL_GLEXT_PROTOTYPES
#include <GL/gl.h>
#include <GL/glext.h>

#include <algorithm>

#include "gl/glSteps.h"
#include "gl/meshVertices.h"

namespace {

using namespace AESDK_OpenGL;

enum class meshState { opaque, translucent, flat };

/// All GL state that differs between the draws.
void SetMeshState(meshState state)
{
    const bool cells = state != meshState::flat;
    Switch(GL_ALPHA_TEST, cells);
    glAlphaFunc(state == meshState::opaque ? GL_EQUAL : GL_LESS, 1.0f);
    Switch(GL_DEPTH_TEST, cells);
    glDepthMask(state == meshState::opaque ? GL_TRUE : GL_FALSE);
    Switch(GL_BLEND, state != meshState::opaque);
    glBlendFunc(GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
    glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
}

/// The client arrays that a meshVertex feeds, on while this lives.
class VertexArrays {
public:
    VertexArrays()
    {
        glClientActiveTexture(GL_TEXTURE0);
        for (const GLenum array : kArrays) glEnableClientState(array);
    }
    ~VertexArrays()
    {
        for (const GLenum array : kArrays) glDisableClientState(array);
    }
    VertexArrays(const VertexArrays&) = delete;
    VertexArrays& operator=(const VertexArrays&) = delete;

    static void Draw(const std::vector<meshVertex>& vertices,
                     const std::vector<std::uint16_t>& indices)
    {
        if (vertices.empty()) return;
        constexpr GLsizei stride = sizeof(meshVertex);
        const meshVertex& first = vertices.front();
        glColorPointer(4, GL_FLOAT, stride, first.color);
        glTexCoordPointer(2, GL_FLOAT, stride, first.tex);
        glNormalPointer(GL_FLOAT, stride, &first.normal);
        glVertexPointer(3, GL_FLOAT, stride, &first.pos);
        const auto cells = static_cast<GLsizei>(vertices.size() / 4);
        glDrawRangeElements(GL_TRIANGLES, 0, static_cast<GLuint>(vertices.size() - 1), 6 * cells,
                            GL_UNSIGNED_SHORT, indices.data());
    }

private:
    static constexpr GLenum kArrays[] = {GL_COLOR_ARRAY, GL_TEXTURE_COORD_ARRAY, GL_NORMAL_ARRAY,
                                         GL_VERTEX_ARRAY};
};

/// Draws the list twice. A long one goes through one vertex array in pieces, so that the array
/// stays small beside the cells; a short one fills it once. A driver may copy the cells and keep
/// them until it draws, software OpenGL at more than 1 KB each: waiting after each piece of a long
/// list bounds that.
void DrawCells(const drawList& list, bool extruded)
{
    const std::span<const quad> cells(list.cells);
    const std::vector<std::uint16_t> indices = CellIndices(std::min(cells.size(), kChunkCells));
    std::vector<meshVertex> vertices;
    const VertexArrays arrays;
    for (const meshState state : {meshState::opaque, meshState::translucent}) {
        SetMeshState(state);
        for (std::size_t first = 0; first < cells.size(); first += kChunkCells) {
            if (vertices.empty() || cells.size() > kChunkCells) {
                const std::size_t count = std::min(kChunkCells, cells.size() - first);
                FillCellVertices(cells.subspan(first, count), cells.size(), extruded, vertices);
            }
            VertexArrays::Draw(vertices, indices);
            if (cells.size() > kChunkCells) glFinish();
        }
    }
}

void DrawStrip(const ribbonSamples& samples)
{
    std::vector<meshVertex> vertices;
    FillStripVertices(samples, vertices);
    const VertexArrays arrays;
    SetMeshState(meshState::flat);
    VertexArrays::Draw(vertices, CellIndices(vertices.size() / 4));
}

void SetView(const frameScene& scene, const frameInstant& instant)
{
    if (instant.values.composition3D()) {
        cam3D(scene.settings.view(), scene.lights, instant.camera, instant.list.nearPlane,
              instant.list.farPlane);
    } else {
        SetView2D(scene.settings.view(), scene.eyeDistance);
    }
}

void SetTextures(const textureRoles& roles)
{
    Require(AESDK_OpenGL_BindTextureToTarget(S_EffectCommonData, roles.video, "videoTexture", 0));
    Require(AESDK_OpenGL_BindTextureToTarget(S_EffectCommonData, roles.back, "backTexture", 1));
}

}  // namespace

AESDK_OpenGL_Err DrawInstant(const frameScene& scene, const frameInstant& instant, passKind pass)
try {
    SetView(scene, instant);
    SetTextures(scene.roles);
    const meshUniforms uniforms =
        MakeMeshUniforms(scene.settings, scene.textures, instant.values, instant.camera, pass);
    SendUniform("dataFromAE", uniforms.dataFromAE);
    SendUniform("reveal", uniforms.reveal);
    SendUniform("pathReveal", uniforms.pathReveal);
    SendUniform("contourColor", uniforms.contourColor);
    if (instant.shape.flat) {
        DrawStrip(instant.shape.ribbon);
    } else {
        SendUniform("DOF", uniforms.DOF);
        DrawCells(instant.list, instant.mesh.extruded());
    }
    return Ok;
} catch (const AESDK_OpenGL_Fault& fault) {
    return fault.code();
}
