#include "gl/shaders.h"

namespace AESDK_OpenGL {

const char* const kVertexShaderText = R"glsl(
varying vec4 color;
varying vec3 position;
varying vec3 normal;

void main()
{
    gl_Position = gl_ModelViewProjectionMatrix * gl_Vertex;
    position = vec3(gl_ModelViewMatrix * gl_Vertex);
    normal = normalize(gl_NormalMatrix * gl_Normal);
    gl_FrontColor = gl_Color;
    gl_TexCoord[0] = gl_MultiTexCoord0;
    color = gl_Color;
    color.g *= 2.0;
}
)glsl";

// Where arithmetic would be undefined the functions below settle it: a direction without length
// stays zero, a light without direction has no highlight, a zero blur denominator means no blur.
// The cell count in color.r is a whole number, but an interpolated 1.0 may come out a little
// larger: it is compared with 1.5.
const char* const kFragmentShaderText = R"glsl(
#extension GL_ARB_texture_rectangle : enable
#define FXAA_REDUCE_MIN (1.0/128.0)
#define FXAA_REDUCE_MUL (1.0/8.0)
#define FXAA_SPAN_MAX 8.0

varying vec4 color;
varying vec3 position;
varying vec3 normal;

uniform sampler2DRect videoTexture;
uniform sampler2DRect backTexture;
uniform sampler2DRect blurTexture;
uniform vec4 dataFromAE;
uniform vec4 reveal;
uniform vec4 pathReveal;
uniform vec4 contourColor;
uniform vec4 DOF;

// The tests on uniforms that choose the work. A specialised form defines them before this text.
#ifndef IS_GEOMETRY
#define IS_GEOMETRY (dataFromAE[3] < 0.0)
#define IS_LIT (dataFromAE[2] != 0.0)
#define IS_ENCODING (DOF[3] > 0.0 || DOF[3] == -1.0)
#define IS_BLURRING (dataFromAE[2] > 0.0)
#endif

// ---- geometry mode ----

bool isExtruded()
{
    return color.r > 1.5;
}

bool isContour()
{
    return color.g >= 1.5;
}

// Outside the revealed part of the source or of the path, or beside the source.
bool isCleared()
{
    vec2 size = dataFromAE.xy;
    vec2 tc = gl_TexCoord[0].xy;
    vec2 rev = reveal.xy;
    if (reveal[2] == 3.0 || reveal[2] == 2.0) {
        rev = vec2(1.0 - reveal[1], 1.0 - reveal[0]);
    }
    if ((reveal[2] == 1.0 || reveal[2] == 3.0) && (tc.x <= rev.x * size.x || tc.x >= rev.y * size.x)) {
        return true;
    }
    if ((reveal[2] == 2.0 || reveal[2] == 4.0) && (tc.y <= rev.x * size.y || tc.y >= rev.y * size.y)) {
        return true;
    }
    bool beside = tc.x < 0.0 || tc.y < 0.0 || tc.x > size.x || tc.y > size.y;
    if (beside && !isContour() && isExtruded()) {
        return true;
    }
    return color.a <= pathReveal[0] || color.a >= pathReveal[1];
}

// What a visible fragment shows. The unlit face rule is the opposite of the lit one: which texture
// the renderer puts on which unit relies on it.
vec4 texelOf(vec4 video, vec4 back)
{
    if (isExtruded()) {
        return isContour() ? contourColor : mix(video, back, 1.0 - clamp(color.g, 0.0, 1.0));
    }
    bool front = gl_FrontFacing || dataFromAE[3] == -1.0;
    return front == IS_LIT ? video : back;
}

vec3 unitOrZero(vec3 v)
{
    float len = length(v);
    return len > 0.0 ? v / len : vec3(0.0);
}

// Full inside the inner cone, fading to nothing at the outer one.
float spotFactor(int i, vec3 toLight)
{
    float effect = dot(unitOrZero(gl_LightSource[i].spotDirection), -toLight);
    float inner = pow(gl_LightSource[i].spotCutoff, cos(gl_LightSource[i].spotExponent * .128));
    float cosInner = cos(radians(inner));
    float cosOuter = cos(radians(gl_LightSource[i].spotCutoff));
    if (effect > cosInner) {
        return 1.0;
    }
    if (effect > cosOuter) {
        return clamp((effect - cosOuter) / (cosInner - cosOuter), 0.0, 1.0);
    }
    return 0.0;
}

vec4 lightSum()
{
    vec3 eyeDir = normalize(-position);
    vec3 N = gl_FrontFacing ? unitOrZero(-normal) : unitOrZero(normal);
    vec4 ambientDiffuse = vec4(0.0);
    vec4 specular = vec4(0.0);
    int count = int(dataFromAE[2]);
    for (int i = 0; i < count; ++i) {
        vec4 place = gl_LightSource[i].position;
        vec3 L = place.xyz;
        float atten = 1.0;
        if (place.w != 0.0) {
            float d = distance(place.xyz, position);
            L = unitOrZero(place.xyz - position);
            atten = 1.0 / (gl_LightSource[i].constantAttenuation +
                           gl_LightSource[i].linearAttenuation * d +
                           gl_LightSource[i].quadraticAttenuation * d * d);
            if (gl_LightSource[i].spotCutoff != 180.0) {
                atten *= spotFactor(i, L);
            }
        }
        ambientDiffuse += gl_FrontLightProduct[i].ambient * atten +
                          gl_FrontLightProduct[i].diffuse * max(dot(N, -L), 0.0) * atten;
        if (dot(L, L) > 0.0) {
            float highlight = max(dot(unitOrZero(reflect(-L, N)), eyeDir), 0.0);
            specular += gl_FrontLightProduct[i].specular *
                        pow(highlight, gl_FrontMaterial.shininess) * atten * reveal[3];
        }
    }
    return gl_FrontLightModelProduct.sceneColor + ambientDiffuse + specular;
}

// A light count between 0 and 1 means neither light nor clipping.
vec4 shadedColor(vec4 video, vec4 back)
{
    if (IS_LIT && int(dataFromAE[2]) <= 0) {
        return (gl_FrontFacing || dataFromAE[3] == -1.0) ? video : back;
    }
    if (isCleared()) {
        return vec4(0.0);
    }
    vec4 texel = texelOf(video, back);
    if (IS_LIT) {
        texel.rgb *= lightSum().rgb;
    }
    return texel;
}

// Red: fraction of the blur. Green: 1 / whole steps of blur. Blue: 1 in front of the focus.
vec3 encodedBlur()
{
    float z = abs(position.z);
    float blur = z / DOF[3] - 1.0;
    blur /= z / length(position) + 1.0;
    blur /= 3.14159;
    if (blur == 0.0) {
        return vec3(0.0);
    }
    float blurMult = 1.0 / ceil(abs(blur));
    float blurSign = blur < 0.0 ? 1.0 : 0.0;
    return vec3(clamp(abs(blur * blurMult), 0.0, 1.0), blurMult, blurSign);
}

vec3 encodedDepth()
{
    return vec3(clamp((position.z - DOF[0]) / (DOF[1] - DOF[0]), 0.0, 1.0));
}

vec4 geometryColor()
{
    vec4 result = shadedColor(texture2DRect(videoTexture, gl_TexCoord[0].xy),
                              texture2DRect(backTexture, gl_TexCoord[0].xy));
    if (IS_ENCODING) {
        result.rgb = (DOF[3] > 0.0 ? encodedBlur() : encodedDepth()) * result.a;
    }
    return result;
}

// ---- post-process mode ----

vec4 videoAt(vec2 texel)
{
    return texture2DRect(videoTexture, texel);
}

vec4 antiAliased(vec2 fc)
{
    float inv = 1.0 / clamp(dataFromAE[3], 0.0, 1.0);
    vec4 luma = vec4(0.299, 0.587, 0.114, 1.0);
    float NW = dot(videoAt((fc + vec2(-1.0, -1.0)) * inv), luma);
    float NE = dot(videoAt((fc + vec2(1.0, -1.0)) * inv), luma);
    float SW = dot(videoAt((fc + vec2(-1.0, 1.0)) * inv), luma);
    float SE = dot(videoAt((fc + vec2(1.0, 1.0)) * inv), luma);
    float M = dot(videoAt(fc), luma);
    float lumaMin = min(M, min(min(NW, NE), min(SW, SE)));
    float lumaMax = max(M, max(max(NW, NE), max(SW, SE)));

    // Blur along the edge, that is across the luma gradient.
    vec2 dir = vec2(-((NW + NE) - (SW + SE)), (NW + SW) - (NE + SE));
    float dirReduce = max((NW + NE + SW + SE) * (0.25 * FXAA_REDUCE_MUL), FXAA_REDUCE_MIN);
    float rcpDirMin = 1.0 / (min(abs(dir.x), abs(dir.y)) + dirReduce);
    dir = clamp(dir * rcpDirMin, vec2(-FXAA_SPAN_MAX), vec2(FXAA_SPAN_MAX)) * inv;

    vec4 rgbA = 0.5 * (videoAt(fc + dir * (1.0 / 3.0 - 0.5)) + videoAt(fc + dir * (2.0 / 3.0 - 0.5)));
    vec4 rgbB = 0.5 * rgbA + 0.25 * (videoAt(fc - 0.5 * dir) + videoAt(fc + 0.5 * dir));
    float lumaB = dot(rgbB, luma);
    return (lumaB < lumaMin || lumaB > lumaMax) ? rgbA : rgbB;
}

float decodedBlur()
{
    vec4 B = texture2DRect(blurTexture, gl_TexCoord[0].xy);
    if (B.g == 0.0) {
        return 0.0;
    }
    float blur = (B.r / B.g) * DOF[0] * DOF[1] * 0.01;
    if (B.b == 1.0) {
        blur = -blur;
    }
    return blur / 0.74;
}

vec4 blurTap(vec2 texel)
{
    vec4 col = videoAt(texel);
    return vec4(col.rgb, sqrt(col.a));
}

// 40 taps a step: the whole ring, then its odd entries at 0.9, then its even ones at 0.7 and 0.4.
vec4 blurred(vec4 start, vec2 fc)
{
    float blur = decodedBlur();
    float maxB = ceil(abs(blur));
    if (maxB <= 1.0) {
        return start;
    }
    vec2 ring[16];
    ring[0] = vec2(0.0, 0.4);
    ring[1] = vec2(0.15, 0.37);
    ring[2] = vec2(0.29, 0.29);
    ring[3] = vec2(-0.37, 0.15);
    ring[4] = vec2(0.4, 0.0);
    ring[5] = vec2(0.37, -0.15);
    ring[6] = vec2(0.29, -0.29);
    ring[7] = vec2(-0.15, -0.37);
    ring[8] = vec2(0.0, -0.4);
    ring[9] = vec2(-0.15, 0.37);
    ring[10] = vec2(-0.29, 0.29);
    ring[11] = vec2(0.37, 0.15);
    ring[12] = vec2(-0.4, 0.0);
    ring[13] = vec2(-0.37, -0.15);
    ring[14] = vec2(-0.29, -0.29);
    ring[15] = vec2(0.15, -0.37);

    vec4 sum = start;
    for (float bl = 1.0; bl < maxB; bl += 1.0) {
        float reach = bl / maxB * blur;
        for (int tap = 0; tap < 40; ++tap) {
            int entry = tap;
            float k = 1.0;
            if (tap >= 24) {
                entry = 2 * (tap - (tap >= 32 ? 32 : 24)) + 2;
                entry = entry == 16 ? 0 : entry;
                k = tap >= 32 ? 0.4 : 0.7;
            } else if (tap >= 16) {
                entry = 2 * (tap - 16) + 1;
                k = 0.9;
            }
            sum += blurTap(fc + ring[entry] * (reach * k));
        }
    }
    sum /= (maxB - 1.0) * 40.0 + 1.0;
    sum.a *= sum.a;
    return sum;
}

vec4 postColor()
{
    vec2 fc = gl_FragCoord.xy;
    vec4 result = antiAliased(fc) * dataFromAE[0];
    if (IS_BLURRING) {
        result = blurred(result, fc);
    }
    return result;
}

void main()
{
    gl_FragColor = vec4(0.0,0.0,0.0,0.0);
    if (IS_GEOMETRY) {
        gl_FragColor = geometryColor();
    } else {
        gl_FragColor = postColor();
    }
    gl_FragColor = clamp(gl_FragColor, vec4(0.0), vec4(1.0));
}
)glsl";

}  // namespace AESDK_OpenGL
