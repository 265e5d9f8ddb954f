#include "gl/sourceTextures.h"

#define GL_GLEXT_PROTOTYPES
#include <GL/gl.h>
#include <GL/glext.h>

#include <cstddef>

#include "Util/AEFX_SuiteHelper.h"
#include "Util/firstError.h"
#include "gl/pixelConversion.h"
#include "gl/sourceImages.h"
#include "gl/textureReuse.h"

namespace {

using AESDK_OpenGL::glName;

/// Packs all rows of `world`, whose first pixel is `first`, back to back and premultiplied.
template <class Pixel>
void PackRows(const PF_EffectWorld& world, const Pixel* first, void* packed)
{
    auto* to = static_cast<Pixel*>(packed);
    const std::ptrdiff_t stride = world.rowbytes / static_cast<A_long>(sizeof(Pixel));
    for (A_long y = 0; y < world.height; ++y) {
        PremultiplyRow(first + stride * y, world.width, to);
        to += world.width;
    }
}

PF_Err Pack8(const renderHost& host, PF_EffectWorld& world, void* packed)
{
    PF_Pixel8* first = nullptr;
    return FirstError{}
        .then([&] { return PF_GET_PIXEL_DATA8(&host.in_data, &world, nullptr, &first); })
        .then([&] {
            if (first == nullptr) return PF_Err{PF_Err_INTERNAL_STRUCT_DAMAGED};
            PackRows(world, first, packed);
            return PF_Err{PF_Err_NONE};
        })
        .code();
}

PF_Err PackFloat(const renderHost& host, PF_EffectWorld& world, void* packed)
{
    StepSuite<PF_PixelDataSuite1> pixels(&host.in_data, &host.out_data, kPFPixelDataSuite,
                                         kPFPixelDataSuiteVersion1);
    PF_PixelFloat* first = nullptr;
    return FirstError(pixels.error())
        .then([&] { return pixels->get_pixel_data_float(&world, nullptr, &first); })
        .then([&] {
            if (first == nullptr) return PF_Err{PF_Err_INTERNAL_STRUCT_DAMAGED};
            PackRows(world, first, packed);
            return PF_Err{PF_Err_NONE};
        })
        .always([&] { return pixels.close(); })
        .code();
}

/// The name at `slot`, made when there is none yet.
glName NameAt(std::vector<std::uint32_t>& names, std::int32_t slot)
{
    const auto position = static_cast<std::size_t>(slot);
    if (names.size() <= position) names.resize(position + 1);
    if (names[position] == 0) glGenTextures(1, &names[position]);
    return names[position];
}

void SetTextureImage(const frameSettings& settings, glName name, const PF_EffectWorld& world,
                     const void* packed)
{
    glBindTexture(GL_TEXTURE_RECTANGLE_ARB, name);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 4);
    glPixelStorei(GL_UNPACK_ROW_LENGTH, 0);
    // Read as A, B, G, R, the host's A, R, G, B leaves its red in GL's blue.
    glTexImage2D(GL_TEXTURE_RECTANGLE_ARB, 0, settings.deep() ? GL_RGBA32F_ARB : GL_RGBA,
                 world.width, world.height, 0, GL_ABGR_EXT,
                 settings.deep() ? GL_FLOAT : GL_UNSIGNED_BYTE, packed);
    glTexParameteri(GL_TEXTURE_RECTANGLE_ARB, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_RECTANGLE_ARB, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
}

PF_Err UploadImage(const renderHost& host, const frameSettings& settings, SourceImage& image,
                   void* staging, std::vector<std::uint32_t>& names)
{
    if (!image.made()) return PF_Err_NONE;
    PF_EffectWorld& world = image.world();
    return FirstError{}
        .then([&] {
            return settings.deep() ? PackFloat(host, world, staging) : Pack8(host, world, staging);
        })
        .then([&] {
            SetTextureImage(settings, NameAt(names, host.record().slot), world, staging);
            return PF_Err_NONE;
        })
        .code();
}

/// Uploads the images that were made through one staging buffer; both have the source's size.
PF_Err UploadImages(const renderHost& host, const frameSettings& settings, sourceImages& images)
{
    const PF_EffectWorld& world = images.source.world();
    const A_u_longlong texelBytes = settings.deep() ? sizeof(PF_PixelFloat) : sizeof(PF_Pixel8);
    const A_u_longlong bytes = texelBytes * static_cast<A_u_longlong>(world.width) *
                               static_cast<A_u_longlong>(world.height);
    const PF_HandleSuite2& handles = host.suites.HandleSuite2();
    const HostHandle staging(handles, bytes);
    if (staging.error() != PF_Err_NONE) return staging.error();
    const HandleLock lock(handles, staging.get());
    if (lock.error() != PF_Err_NONE) return lock.error();

    SequenceData& record = host.record();
    (void)AESDK_OpenGL::TakeGLErrors();  // of whatever came before
    glActiveTexture(GL_TEXTURE0);
    glEnable(GL_TEXTURE_RECTANGLE_ARB);
    return FirstError{}
        .then([&] {
            return UploadImage(host, settings, images.source, lock.memory(), record.sourceTextures);
        })
        .then([&] {
            return UploadImage(host, settings, images.back, lock.memory(), record.backTextures);
        })
        .then([&] { return host.gl(AESDK_OpenGL::CheckGLErrors()); })
        .code();
}

/// Which of a frame's images are in the record's textures.
struct shownImages {
    bool source = false, back = false;
};

/// Reads the layers and uploads what comes of them.
PF_Err RenewTextures(const renderHost& host, const frameSettings& settings,
                     const paramSnapshot& values, shownImages& shown)
{
    sourceImages images;
    return FirstError{}
        .then([&] { return MakeSourceImages(host, settings, values, images); })
        .then([&] {
            shown = {.source = images.source.made(), .back = images.back.made()};
            if (!shown.source) return PF_Err{PF_Err_NONE};
            host.record().sourceWidth = images.source.world().width;
            host.record().sourceHeight = images.source.world().height;
            return UploadImages(host, settings, images);
        })
        .always([&] { return images.close(); })
        .code();
}

frameTextures TexturesOf(const SequenceData& record, const shownImages& shown)
{
    if (!shown.source) return {};
    const glName source = TextureAt(record.sourceTextures, record.slot);
    return {.ready = true,
            .source = source,
            .back = shown.back ? TextureAt(record.backTextures, record.slot) : source,
            .width = record.sourceWidth,
            .height = record.sourceHeight};
}

void PrepareLists(SequenceData& record)
{
    if (record.slot < 0) record.slot = 0;
    if (record.listsInitialised != 0) return;
    record.sourceTextures.clear();
    record.backTextures.clear();
    record.listsInitialised = 1;
}

}  // namespace

PF_Err PrepareTextures(const renderHost& host, const frameSettings& settings,
                       const paramSnapshot& values, frameTextures& textures)
{
    SequenceData& record = host.record();
    PrepareLists(record);
    bool reuse = false;
    shownImages shown{.source = true, .back = settings.separateBack};
    return FirstError{}
        .then([&] { return TestTextureReuse(host, settings, values, reuse); })
        .then([&] {
            return reuse ? PF_Err{PF_Err_NONE} : RenewTextures(host, settings, values, shown);
        })
        .then([&] {
            // An image that is missing now may be there at the next frame.
            record.statesValid = shown.source && shown.back == settings.separateBack ? 1 : 0;
            textures = TexturesOf(record, shown);
            return PF_Err_NONE;
        })
        .code();
}
