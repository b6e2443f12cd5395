#include <ketra/reaction/detail/ReactingState.h>

namespace reaction::detail {

ReactingState::ReactingState(const ReactingMixture& newMixture)
    : mixture(newMixture), m(newMixture.elSize())
{
    refresh();
}

void ReactingState::refresh()
{
    N = mixture.size();
    ng = mixture.gasSize();
    for (auto* values : {&n, &lnN, &H, &U, &G, &S, &Cp, &Cv}) values->resize(N);
    a.resize(std::size_t{N} * m);
    for (unsigned int j = 0; j < N; ++j)
        for (unsigned int i = 0; i < m; ++i) a[std::size_t{j} * m + i] = mixture.a(i, j);
    refreshValues();
}

void ReactingState::refreshValues()
{
    for (unsigned int j = 0; j < N; ++j) {
        const Product& product = *mixture.product(j);
        n[j] = product.n();
        lnN[j] = product.ln_n();
        const ReducedFunctions f = product.reduced();
        H[j] = f.H;
        U[j] = f.U;
        G[j] = f.G;
        S[j] = f.S;
        Cp[j] = f.Cp;
        Cv[j] = f.Cv;
    }
}

} // namespace reaction::detail
