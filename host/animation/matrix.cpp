#include <cmath>
#include <cstddef>
#include <utility>

#include "animation/evaluate.h"

namespace orv {

matrix4 operator*(const matrix4& a, const matrix4& b)
{
    matrix4 product;
    for (std::size_t row = 0; row < 4; ++row) {
        for (std::size_t column = 0; column < 4; ++column) {
            double sum = 0.0;
            for (std::size_t k = 0; k < 4; ++k) sum += a.m[row][k] * b.m[k][column];
            product.m[row][column] = sum;
        }
    }
    return product;
}

namespace {

/// Brings the largest entry of `column` at or below the diagonal onto it. False: all are zero.
bool PivotColumn(matrix4& work, matrix4& inverse, std::size_t column)
{
    std::size_t best = column;
    for (std::size_t row = column + 1; row < 4; ++row) {
        if (std::abs(work.m[row][column]) > std::abs(work.m[best][column])) best = row;
    }
    std::swap(work.m[column], work.m[best]);
    std::swap(inverse.m[column], inverse.m[best]);
    const double pivot = work.m[column][column];
    return pivot != 0.0 && std::isfinite(pivot);
}

/// Makes the pivot 1 and every other entry of its column 0, with the same steps on both matrices.
void ClearColumn(matrix4& work, matrix4& inverse, std::size_t column)
{
    const double pivot = work.m[column][column];
    for (std::size_t k = 0; k < 4; ++k) {
        work.m[column][k] /= pivot;
        inverse.m[column][k] /= pivot;
    }
    for (std::size_t row = 0; row < 4; ++row) {
        if (row == column) continue;
        const double factor = work.m[row][column];
        for (std::size_t k = 0; k < 4; ++k) {
            work.m[row][k] -= factor * work.m[column][k];
            inverse.m[row][k] -= factor * inverse.m[column][k];
        }
    }
}

}  // namespace

std::optional<matrix4> Inverse(const matrix4& m)
{
    matrix4 work = m;
    matrix4 inverse;
    for (std::size_t column = 0; column < 4; ++column) {
        if (!PivotColumn(work, inverse, column)) return std::nullopt;
        ClearColumn(work, inverse, column);
    }
    return inverse;
}

vec3 TransformPoint(const vec3& p, const matrix4& m)
{
    const auto along = [&](std::size_t k) {
        return p.x * m.m[0][k] + p.y * m.m[1][k] + p.z * m.m[2][k] + m.m[3][k];
    };
    return {along(0), along(1), along(2)};
}

}  // namespace orv
