#define GL_GLEXT_PROTOTYPES
#include "bareGl.h"

#include <GL/glext.h>

#include <chrono>
#include <stdexcept>
#include <utility>

namespace orv {
namespace {

constexpr const char* kRibbonShader = R"(
#extension GL_ARB_texture_rectangle : enable
uniform sampler2DRect picture;
void main() { gl_FragColor = texture2DRect(picture, gl_TexCoord[0].st); }
)";

constexpr const char* kPostShader = R"(
#extension GL_ARB_texture_rectangle : enable
uniform sampler2DRect picture;
void main()
{
    vec4 sum = vec4(0.0);
    for (int y = -1; y <= 1; ++y)
        for (int x = -1; x <= 1; ++x)
            sum += texture2DRect(picture, gl_FragCoord.xy + vec2(float(x), float(y)));
    gl_FragColor = sum / 9.0;
}
)";

/// The context is current while one lives.
class Current {
public:
    explicit Current(AGLContext context) { aglSetCurrentContext(context); }
    ~Current() { CGLSetCurrentContext(before_); }
    Current(const Current&) = delete;
    Current& operator=(const Current&) = delete;

private:
    CGLContextObj before_ = CGLGetCurrentContext();
};

AGLContext MakeContext()
{
    const GLint attributes[] = {AGL_RGBA, AGL_NONE};
    const AGLPixelFormat format = aglChoosePixelFormat(nullptr, 0, attributes);
    const AGLContext context = format ? aglCreateContext(format, nullptr) : nullptr;
    aglDestroyPixelFormat(format);
    if (!context) throw std::runtime_error(macGLError());
    return context;
}

GLuint MakeProgram(const char* text)
{
    const GLuint shader = glCreateShader(GL_FRAGMENT_SHADER);
    glShaderSource(shader, 1, &text, nullptr);
    glCompileShader(shader);
    const GLuint program = glCreateProgram();
    glAttachShader(program, shader);
    glDeleteShader(shader);
    glLinkProgram(program);
    GLint linked = 0;
    glGetProgramiv(program, GL_LINK_STATUS, &linked);
    if (!linked) throw std::runtime_error("the benchmark's shader does not link");
    return program;
}

/// Two triangles a cell.
std::vector<float> CellVertices(std::span<const quad> cells)
{
    std::vector<float> vertices;
    vertices.reserve(cells.size() * 6 * 4);
    for (const quad& cell : cells)
        for (const int corner : {0, 1, 2, 0, 2, 3})
            for (const float value :
                 {cell.pos[corner].x, cell.pos[corner].y, cell.tex[corner].x, cell.tex[corner].y})
                vertices.push_back(value);
    return vertices;
}

GLuint MakeTexture()
{
    GLuint texture = 0;
    glGenTextures(1, &texture);
    glBindTexture(GL_TEXTURE_RECTANGLE_ARB, texture);
    glTexParameteri(GL_TEXTURE_RECTANGLE_ARB, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_RECTANGLE_ARB, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    return texture;
}

}  // namespace

BareGl::BareGl(int width, int height, image source, std::span<const quad> cells)
    : width_(width),
      height_(height),
      source_(std::move(source)),
      vertices_(CellVertices(cells)),
      pixels_(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 4),
      context_(MakeContext())
{
    const Current current(context_);
    ribbonProgram_ = MakeProgram(kRibbonShader);
    postProgram_ = MakeProgram(kPostShader);
    sourceTexture_ = MakeTexture();
    scene_ = MakeTarget();
    post_ = MakeTarget();
    glViewport(0, 0, width_, height_);
    glOrtho(0.0, width_, 0.0, height_, -100000.0, 100000.0);
}

BareGl::~BareGl()
{
    aglDestroyContext(context_);
}

BareGl::target BareGl::MakeTarget() const
{
    target made;
    made.texture = MakeTexture();
    glTexImage2D(GL_TEXTURE_RECTANGLE_ARB, 0, GL_RGBA32F, width_, height_, 0, GL_RGBA, GL_FLOAT,
                 nullptr);
    glGenFramebuffers(1, &made.frameBuffer);
    glBindFramebuffer(GL_FRAMEBUFFER, made.frameBuffer);
    glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_RECTANGLE_ARB,
                           made.texture, 0);
    if (glCheckFramebufferStatus(GL_FRAMEBUFFER) != GL_FRAMEBUFFER_COMPLETE)
        throw std::runtime_error("the benchmark's render target is not complete");
    return made;
}

void BareGl::Upload() const
{
    glBindTexture(GL_TEXTURE_RECTANGLE_ARB, sourceTexture_);
    glTexImage2D(GL_TEXTURE_RECTANGLE_ARB, 0, GL_RGBA8, source_.width, source_.height, 0,
                 GL_ABGR_EXT, GL_UNSIGNED_BYTE, source_.bytes.data());
}

void BareGl::DrawRibbon() const
{
    glBindFramebuffer(GL_FRAMEBUFFER, scene_.frameBuffer);
    glClear(GL_COLOR_BUFFER_BIT);
    glUseProgram(ribbonProgram_);
    glBindTexture(GL_TEXTURE_RECTANGLE_ARB, sourceTexture_);
    glEnable(GL_BLEND);
    glBlendFunc(GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
    glEnableClientState(GL_VERTEX_ARRAY);
    glEnableClientState(GL_TEXTURE_COORD_ARRAY);
    constexpr GLsizei stride = 4 * sizeof(float);
    glVertexPointer(2, GL_FLOAT, stride, vertices_.data());
    glTexCoordPointer(2, GL_FLOAT, stride, vertices_.data() + 2);
    glDrawArrays(GL_TRIANGLES, 0, static_cast<GLsizei>(vertices_.size() / 4));
}

void BareGl::DrawPost() const
{
    glBindFramebuffer(GL_FRAMEBUFFER, post_.frameBuffer);
    glUseProgram(postProgram_);
    glBindTexture(GL_TEXTURE_RECTANGLE_ARB, scene_.texture);
    glDisable(GL_BLEND);
    glRecti(0, 0, width_, height_);
}

void BareGl::ReadBack()
{
    glReadPixels(0, 0, width_, height_, GL_ABGR_EXT, GL_UNSIGNED_BYTE, pixels_.data());
}

bareGlSeconds BareGl::Frame(bool separate)
{
    const Current current(context_);
    auto last = std::chrono::steady_clock::now();
    const auto stage = [&](auto&& work) {
        work();
        if (separate) glFinish();
        const auto now = std::chrono::steady_clock::now();
        return std::chrono::duration<double>(now - std::exchange(last, now)).count();
    };
    bareGlSeconds seconds;
    seconds.upload = stage([this] { Upload(); });
    seconds.draw = stage([this] { DrawRibbon(); });
    seconds.post = stage([this] { DrawPost(); });
    seconds.readBack = stage([this] { ReadBack(); });
    return seconds;
}

}  // namespace orv
