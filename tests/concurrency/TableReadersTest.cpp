#include <ketra/math/interpolation/Interpolation.h>
#include <ketra/math/interpolation/Interpolation2D.h>

#include <gtest/gtest.h>

#include <thread>
#include <vector>

namespace {

TEST(Tables, AreReadByManyThreadsAtOnce)
{
    std::vector<double> x, y;
    for (int i = 0; i < 120; ++i) {
        x.push_back(1.0 + 0.1 * i);
        y.push_back(1e7 / (1.0 + i));
    }
    const math::interpolation::Interpolation table(120, x.data(), y.data());
    const math::interpolation::Interpolation2D grid(12, x.data(), 10, y.data(), y.data());

    const auto readAll = [&] {
        double sum = 0.0;
        for (double at = 1.0; at < 2.0; at += 0.001)
            sum += table.linearInterpolation(at) + table.polynomialInterpolation(at) +
                   grid.bilinearInterpolation(at, 2e6);
        return sum;
    };
    const double alone = readAll();
    std::vector<double> sums(8);
    std::vector<std::thread> readers;
    for (double& sum : sums) readers.emplace_back([&sum, &readAll] { sum = readAll(); });
    for (std::thread& reader : readers) reader.join();
    for (const double sum : sums) EXPECT_EQ(sum, alone);
}

} // namespace
