// Masks blurred and grown: shadows, glows and outlines of what a mask covers.
#include "68_soft_masks.h"

#include <algorithm>

namespace vl_soft_masks {
namespace {

// Squared distances along one line of a grid to the nearest seed, in place (lower envelope of
// parabolas). `places` and `bounds` are room for it.
void distancesAlong(float *values, int count, int stride, std::vector<float> &line,
                    std::vector<int> &places, std::vector<double> &bounds)
{
    const float kNone = 1e20f;
    for (int i = 0; i < count; ++i)
        line[i] = values[(size_t)i * stride];
    int last = 0;
    places[0] = 0;
    bounds[0] = -kNone;
    bounds[1] = kNone;
    for (int i = 1; i < count; ++i) {
        if (line[i] >= kNone)
            continue;
        double meet;
        do {
            const int p = places[last];
            meet = line[p] >= kNone
                       ? -kNone
                       : (line[i] - line[p] + (double)i * i - (double)p * p) / (2.0 * (i - p));
        } while (meet <= bounds[last] && --last >= 0);
        last = std::max(last + 1, 0);
        places[last] = i;
        bounds[last] = last == 0 ? -kNone : meet;
        bounds[last + 1] = kNone;
    }
    int at = 0;
    for (int i = 0; i < count; ++i) {
        while (bounds[at + 1] < i)
            ++at;
        const float away = (float)(i - places[at]);
        values[(size_t)i * stride] = std::min(kNone, away * away + line[places[at]]);
    }
}

std::vector<float> squaredDistances(const VL_Mask &mask)
{
    std::vector<float> values(mask.cover.size());
    for (size_t i = 0; i < values.size(); ++i) {
        // The edge runs inside a pixel that is partly covered.
        const float part = mask.cover[i] / 255.0f;
        const float away = std::max(0.0f, 0.5f - part);
        values[i] = part > 0 ? away * away : 1e20f;
    }
    const int longest = std::max(mask.width, mask.height);
    std::vector<float> line(longest);
    std::vector<double> bounds((size_t)longest + 2);
    std::vector<int> places((size_t)longest + 1);
    for (int x = 0; x < mask.width; ++x)
        distancesAlong(values.data() + x, mask.height, mask.width, line, places, bounds);
    for (int y = 0; y < mask.height; ++y)
        distancesAlong(values.data() + (size_t)y * mask.width, mask.width, 1, line, places, bounds);
    return values;
}

// Averages `count` values, `stride` apart, over 2 * radius + 1 neighbours.
void averageAlong(unsigned char *values, int count, int stride, int radius,
                  std::vector<unsigned char> &line)
{
    for (int i = 0; i < count; ++i)
        line[i] = values[(size_t)i * stride];
    int sum = 0;
    for (int i = 0; i < std::min(radius, count); ++i)
        sum += line[i];
    for (int i = 0; i < count; ++i) {
        if (i + radius < count)
            sum += line[i + radius];
        if (i - radius - 1 >= 0)
            sum -= line[i - radius - 1];
        values[(size_t)i * stride] = (unsigned char)(sum / (2 * radius + 1));
    }
}

} // namespace
} // namespace vl_soft_masks

void VL_BlurMask(VL_Mask &mask, int radius)
{
    if (radius <= 0 || mask.cover.empty())
        return;
    std::vector<unsigned char> line(std::max(mask.width, mask.height));
    // Two rounds come near enough to a bell curve.
    for (int round = 0; round < 2; ++round) {
        for (int y = 0; y < mask.height; ++y)
            vl_soft_masks::averageAlong(mask.cover.data() + (size_t)y * mask.width, mask.width, 1,
                                        radius, line);
        for (int x = 0; x < mask.width; ++x)
            vl_soft_masks::averageAlong(mask.cover.data() + x, mask.height, mask.width, radius,
                                        line);
    }
}

VL_Mask VL_GrowMask(const VL_Mask &mask, double radius, bool soft)
{
    VL_Mask grown = mask;
    if (mask.cover.empty() || radius <= 0)
        return grown;
    const std::vector<float> distances = vl_soft_masks::squaredDistances(mask);
    for (size_t i = 0; i < distances.size(); ++i) {
        const double away = std::sqrt(distances[i]);
        double part = std::min(1.0, std::max(0.0, radius + 0.5 - away));
        if (soft) {
            const double rest = std::max(0.0, 1 - away / (radius + 1));
            part = rest * rest * (3 - 2 * rest) * 0.9;
        }
        grown.cover[i] = std::max(mask.cover[i], (unsigned char)(part * 255 + 0.5));
    }
    return grown;
}
