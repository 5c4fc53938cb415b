#ifndef BENCH_RELAY_FIGURES_H
#define BENCH_RELAY_FIGURES_H

#include <string>
#include <vector>

// The values one figure took over several runs.
class Figure {
public:
    void Add(double value) { values_.push_back(value); }
    bool empty() const { return values_.empty(); }
    double Median() const;
    double Min() const;
    double Max() const;
    // "median (min - max)" with `decimals` decimals, or "-" without values.
    std::string Text(int decimals) const;

private:
    std::vector<double> values_;
};

// The least-squares line y = fixed + per_x * x through the points.
struct LinearFit {
    double fixed = 0;
    double per_x = 0;
};
LinearFit FitLine(const std::vector<double>& x, const std::vector<double>& y);

#endif
