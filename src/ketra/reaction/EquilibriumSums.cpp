// The sums of the solver over the present list, as the public interface offers them. The iteration
// works on a contiguous picture of the list and forms the same numbers in the same order.

#include <ketra/reaction/Equilibrium.h>

namespace reaction {

namespace {

/// Sum of a term over the entries from `from` up to but excluding `to`; 0 for an empty range.
template <class Term> double sum(unsigned int from, unsigned int to, Term term)
{
    double total = 0.0;
    for (unsigned int j = from; j < to; ++j) total += term(j);
    return total;
}

} // namespace

double Equilibrium::L(unsigned int j) const
{
    return mixture->product(j)->isCondensed() ? 0.0 : mixture->ln_n(j) - lnNg + lnP;
}

double Equilibrium::L_V(unsigned int j) const
{
    return mixture->product(j)->isCondensed() ? 0.0 : mixture->ln_n(j) + lnPv;
}

double Equilibrium::PSI(unsigned int j) const { return mixture->product(j)->G0_tilde() + L(j); }

double Equilibrium::PSI_V(unsigned int j) const { return mixture->product(j)->G0_tilde() + L_V(j); }

double Equilibrium::sum_n(unsigned int from, unsigned int to, const ReactingMixture* m)
{
    return sum(from, to, [=](unsigned int j) { return m->n(j); });
}

double Equilibrium::sum_n(unsigned int from, unsigned int to) const
{
    return sum_n(from, to, mixture.get());
}

double Equilibrium::sum_nH(unsigned int from, unsigned int to, const ReactingMixture* m)
{
    return sum(from, to, [=](unsigned int j) { return m->n(j) * m->product(j)->H0_tilde(); });
}

double Equilibrium::sum_nH(unsigned int from, unsigned int to) const
{
    return sum_nH(from, to, mixture.get());
}

double Equilibrium::sum_nU(unsigned int from, unsigned int to, const ReactingMixture* m)
{
    return sum(from, to, [=](unsigned int j) { return m->n(j) * m->product(j)->U0_tilde(); });
}

double Equilibrium::sum_nU(unsigned int from, unsigned int to) const
{
    return sum_nU(from, to, mixture.get());
}

double Equilibrium::sum_nS(unsigned int from, unsigned int to, const ReactingMixture* m)
{
    return sum(from, to, [=](unsigned int j) { return m->n(j) * m->product(j)->S0_tilde(); });
}

double Equilibrium::sum_nS(unsigned int from, unsigned int to) const
{
    return sum_nS(from, to, mixture.get());
}

double Equilibrium::sum_an(unsigned int i, unsigned int from, unsigned int to,
                           const ReactingMixture* m)
{
    return sum(from, to, [=](unsigned int j) { return m->a(i, j) * m->n(j); });
}

double Equilibrium::sum_an(unsigned int i, unsigned int from, unsigned int to) const
{
    return sum_an(i, from, to, mixture.get());
}

double Equilibrium::sum_aan(unsigned int i, unsigned int k, unsigned int from, unsigned int to,
                            const ReactingMixture* m)
{
    return sum(from, to, [=](unsigned int j) { return m->a(i, j) * m->n(j) * m->a(k, j); });
}

double Equilibrium::sum_aan(unsigned int i, unsigned int k, unsigned int from,
                            unsigned int to) const
{
    return sum_aan(i, k, from, to, mixture.get());
}

double Equilibrium::sum_anH(unsigned int i, unsigned int from, unsigned int to,
                            const ReactingMixture* m)
{
    return sum(from, to,
               [=](unsigned int j) { return m->a(i, j) * m->n(j) * m->product(j)->H0_tilde(); });
}

double Equilibrium::sum_anH(unsigned int i, unsigned int from, unsigned int to) const
{
    return sum_anH(i, from, to, mixture.get());
}

double Equilibrium::sum_anU(unsigned int i, unsigned int from, unsigned int to,
                            const ReactingMixture* m)
{
    return sum(from, to,
               [=](unsigned int j) { return m->a(i, j) * m->n(j) * m->product(j)->U0_tilde(); });
}

double Equilibrium::sum_anU(unsigned int i, unsigned int from, unsigned int to) const
{
    return sum_anU(i, from, to, mixture.get());
}

double Equilibrium::sum_nH_nCp(unsigned int from1, unsigned int to1, unsigned int from2,
                               unsigned int to2, const ReactingMixture* m)
{
    return sum(from1, to1,
               [=](unsigned int j) {
                   return m->n(j) * m->product(j)->H0_tilde() * m->product(j)->H0_tilde();
               }) +
           sum(from2, to2, [=](unsigned int j) { return m->n(j) * m->product(j)->Cp0_tilde(); });
}

double Equilibrium::sum_nH_nCp(unsigned int from1, unsigned int to1, unsigned int from2,
                               unsigned int to2) const
{
    return sum_nH_nCp(from1, to1, from2, to2, mixture.get());
}

double Equilibrium::sum_nU_nCv(unsigned int from1, unsigned int to1, unsigned int from2,
                               unsigned int to2, const ReactingMixture* m)
{
    return sum(from1, to1,
               [=](unsigned int j) {
                   return m->n(j) * m->product(j)->U0_tilde() * m->product(j)->U0_tilde();
               }) +
           sum(from2, to2, [=](unsigned int j) { return m->n(j) * m->product(j)->Cv0_tilde(); });
}

double Equilibrium::sum_nU_nCv(unsigned int from1, unsigned int to1, unsigned int from2,
                               unsigned int to2) const
{
    return sum_nU_nCv(from1, to1, from2, to2, mixture.get());
}

double Equilibrium::sum_nPSI(unsigned int from, unsigned int to) const
{
    const ReactingMixture* m = mixture.get();
    return sum(from, to, [=, this](unsigned int j) { return m->n(j) * PSI(j); });
}

double Equilibrium::sum_nPSI_V(unsigned int from, unsigned int to) const
{
    const ReactingMixture* m = mixture.get();
    return sum(from, to, [=, this](unsigned int j) { return m->n(j) * PSI_V(j); });
}

double Equilibrium::sum_nHPSI(unsigned int from, unsigned int to) const
{
    const ReactingMixture* m = mixture.get();
    return sum(from, to,
               [=, this](unsigned int j) { return m->n(j) * m->product(j)->H0_tilde() * PSI(j); });
}

double Equilibrium::sum_nUPSI(unsigned int from, unsigned int to) const
{
    const ReactingMixture* m = mixture.get();
    return sum(from, to, [=, this](unsigned int j) {
        return m->n(j) * m->product(j)->U0_tilde() * PSI_V(j);
    });
}

double Equilibrium::sum_anPSI(unsigned int i, unsigned int from, unsigned int to) const
{
    const ReactingMixture* m = mixture.get();
    return sum(from, to, [=, this](unsigned int j) { return m->a(i, j) * m->n(j) * PSI(j); });
}

double Equilibrium::sum_anPSI_V(unsigned int i, unsigned int from, unsigned int to) const
{
    const ReactingMixture* m = mixture.get();
    return sum(from, to, [=, this](unsigned int j) { return m->a(i, j) * m->n(j) * PSI_V(j); });
}

double Equilibrium::sum_nS_L(unsigned int from, unsigned int to) const
{
    const ReactingMixture* m = mixture.get();
    return sum(from, to,
               [=, this](unsigned int j) { return m->n(j) * (m->product(j)->S0_tilde() - L(j)); });
}

double Equilibrium::sum_nS_L_V(unsigned int from, unsigned int to) const
{
    const ReactingMixture* m = mixture.get();
    return sum(from, to, [=, this](unsigned int j) {
        return m->n(j) * (m->product(j)->S0_tilde() - L_V(j));
    });
}

double Equilibrium::sum_anS_L_1(unsigned int i, unsigned int from, unsigned int to) const
{
    const ReactingMixture* m = mixture.get();
    return sum(from, to, [=, this](unsigned int j) {
        return m->a(i, j) * m->n(j) * (m->product(j)->S0_tilde() - L(j) - 1.0);
    });
}

double Equilibrium::sum_anS_L_V_1(unsigned int i, unsigned int from, unsigned int to) const
{
    const ReactingMixture* m = mixture.get();
    return sum(from, to, [=, this](unsigned int j) {
        return m->a(i, j) * m->n(j) * (m->product(j)->S0_tilde() - L_V(j) - 1.0);
    });
}

double Equilibrium::sum_nHS_nCp(unsigned int from1, unsigned int to1, unsigned int from2,
                                unsigned int to2) const
{
    const ReactingMixture* m = mixture.get();
    return sum(from1, to1,
               [=, this](unsigned int j) {
                   return m->n(j) * (m->product(j)->S0_tilde() - L(j) - 1.0) *
                          m->product(j)->H0_tilde();
               }) +
           sum(from2, to2, [=](unsigned int j) { return m->n(j) * m->product(j)->Cp0_tilde(); });
}

double Equilibrium::sum_nUS_nCv(unsigned int from1, unsigned int to1, unsigned int from2,
                                unsigned int to2) const
{
    const ReactingMixture* m = mixture.get();
    return sum(from1, to1,
               [=, this](unsigned int j) {
                   return m->n(j) * (m->product(j)->S0_tilde() - L_V(j) - 1.0) *
                          m->product(j)->U0_tilde();
               }) +
           sum(from2, to2, [=](unsigned int j) { return m->n(j) * m->product(j)->Cv0_tilde(); });
}

double Equilibrium::sum_nS_L_1_PSI(unsigned int from, unsigned int to) const
{
    const ReactingMixture* m = mixture.get();
    return sum(from, to, [=, this](unsigned int j) {
        return m->n(j) * (m->product(j)->S0_tilde() - L(j) - 1.0) * PSI(j);
    });
}

double Equilibrium::sum_nS_L_V_1_PSI_V(unsigned int from, unsigned int to) const
{
    const ReactingMixture* m = mixture.get();
    return sum(from, to, [=, this](unsigned int j) {
        return m->n(j) * (m->product(j)->S0_tilde() - L_V(j) - 1.0) * PSI_V(j);
    });
}

} // namespace reaction
