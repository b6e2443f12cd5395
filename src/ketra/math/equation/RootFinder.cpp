#include <ketra/math/equation/RootFinder.h>

#include <ketra/math/equation/Exception.h>
#include <ketra/math/equation/Function.h>

namespace math::equation {

namespace {

constexpr int stepLimit = 100;

} // namespace

RootFinder::RootFinder(Function* f) : function(f), steps(0)
{
    if (f == nullptr) throw Exception(0);
}

RootFinder::~RootFinder() = default;

bool RootFinder::step()
{
    if (steps >= stepLimit) throw Exception(1);
    doIterationProcedure(++steps);
    return hasConverged();
}

double RootFinder::value(double x) { return function->at(x); }

double RootFinder::derivative(double x) { return function->at1(x); }

} // namespace math::equation
