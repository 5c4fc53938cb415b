#include "bench/relay/figures.h"

#include <algorithm>
#include <cstdio>

double Figure::Median() const {
    std::vector<double> sorted = values_;
    std::sort(sorted.begin(), sorted.end());
    const std::size_t n = sorted.size();
    return n % 2 ? sorted[n / 2] : (sorted[n / 2 - 1] + sorted[n / 2]) / 2;
}

double Figure::Min() const { return *std::min_element(values_.begin(), values_.end()); }

double Figure::Max() const { return *std::max_element(values_.begin(), values_.end()); }

std::string Figure::Text(int decimals) const {
    if (values_.empty()) return "-";
    char text[96];
    if (values_.size() == 1)
        std::snprintf(text, sizeof text, "%.*f", decimals, Median());
    else
        std::snprintf(text, sizeof text, "%.*f (%.*f - %.*f)", decimals, Median(), decimals, Min(),
                      decimals, Max());
    return text;
}

LinearFit FitLine(const std::vector<double>& x, const std::vector<double>& y) {
    const double n = static_cast<double>(x.size());
    double sx = 0, sy = 0, sxx = 0, sxy = 0;
    for (std::size_t i = 0; i < x.size(); ++i) {
        sx += x[i];
        sy += y[i];
        sxx += x[i] * x[i];
        sxy += x[i] * y[i];
    }
    LinearFit fit;
    fit.per_x = (n * sxy - sx * sy) / (n * sxx - sx * sx);
    fit.fixed = (sy - fit.per_x * sx) / n;
    return fit;
}
