#pragma once

#include <ketra/export.h>
#include <ketra/thermo/ChemicalFormula.h>
#include <ketra/thermo/Constants.h>
#include <ketra/thermo/Polynomial.h>
#include <ketra/thermo/StandardState.h>
#include <ketra/util/Lent.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace math::interpolation {
class Interpolation;
class Interpolation2D;
} // namespace math::interpolation
namespace thermo::properties {
class TransportProperties;
} // namespace thermo::properties

namespace thermo {

/// One chemical species in one phase: identity, formula, molar mass, heat of formation, and its
/// standard-state functions of temperature as a list of intervals. For a condensed species tables
/// of properties over pressure and temperature may stand beside them.
///
/// The 0 in the names of the functions means the standard state: they do not depend on pressure.
/// `_tilde` marks the dimensionless form: Cp/R, H/(R T), S/R and so on.
///
/// A record of a single temperature ("fixed-temperature record") has exactly one interval, whose
/// upper bound is 0. It has no curve: the lower bound is the temperature at which its enthalpy
/// holds.
///
/// A copy made by the copy constructor shares formula, intervals and tables with its source and
/// does not own them: the source must outlive it. Copies are made by the hundred for the products
/// of a reaction. A copy that is changed first takes its own deep copy, so its source never
/// changes.
///
/// Species are read by many threads at once without a lock: no function keeps a cache. Only one
/// thread may change a species, under the lock of its database.
class KETRA_API Species
{
public:
    virtual ~Species();

    /// True if all lines of the record have been read.
    virtual bool isCompleted() const { return true; }
    /// Number of electrons beyond the neutral molecule, with the sign as in the file: -1 for Na+.
    virtual double getCharge() const { return charge; }
    virtual bool isIon() const { return charge != 0.0; }
    /// True if the species is a component of propellants only and never a product.
    virtual bool isReactantOnly() const { return false; }
    /// The temperature at which the species is evaluated when \p T is asked for: T itself inside
    /// the intervals; for a fixed-temperature record T inside its table of specific heat, or the
    /// record's own temperature if T is within 1 K of it.
    /// \throws thermo::Exception 1 for any other temperature.
    virtual double getT(double T) const;
    /// Lower bound of the first interval, K; 0 without intervals.
    virtual double getMinimalT() const;
    /// Upper bound of the last interval, K; 0 for a fixed-temperature record or without intervals.
    virtual double getMaximalT() const;
    /// Molar mass, g/mol.
    virtual double getM() const { return M; }

    /// Heat capacity at constant pressure, J/(mol K). The interval is the first one that holds T,
    /// so that at a shared bound the lower interval wins; nothing is extrapolated.
    /// \throws thermo::Exception 1 outside all intervals, and always for a fixed-temperature
    /// record; likewise below.
    virtual double Cp0(double T) const;
    /// Cp/R.
    virtual double Cp0_tilde(double T) const;
    /// Heat capacity at constant volume, J/(mol K). For a gas this is Cp0 - 298.15, which is not
    /// Cv0_tilde * R; the two differ on purpose.
    virtual double Cv0(double T) const;
    /// Cv/R: for a gas Cp/R - 1.
    virtual double Cv0_tilde(double T) const;
    /// Enthalpy, J/mol. A fixed-temperature record has it at exactly its temperature.
    virtual double H0(double T) const;
    /// H/(R T).
    virtual double H0_tilde(double T) const;
    /// Internal energy, J/mol.
    virtual double U0(double T) const;
    /// U/(R T).
    virtual double U0_tilde(double T) const;
    /// Entropy, J/(mol K).
    virtual double S0(double T) const;
    /// S/R.
    virtual double S0_tilde(double T) const;
    /// Gibbs energy, J/mol.
    virtual double G0(double T) const;
    /// G/(R T).
    virtual double G0_tilde(double T) const;

    virtual bool isCondensed() const { return condensed != 0; }
    virtual bool isLiquid() const { return liquid; }
    /// 0 for a gas, else the number of the phase in the file.
    virtual int getCondensed() const { return condensed; }

    /// Appends the record to \p out in the format of its file; nothing in this class.
    virtual void writeTo(std::string& out, int fileSourceId) const;
    /// Appends the block of property tables to \p out, in the format of the properties file. With
    /// \p fileSourceId not negative and not the tables' own source nothing is appended.
    /// \throws runtime::Exception 0 after a logged error if a value does not fit its column.
    virtual void writePropertiesTo(std::string& out, int fileSourceId) const;
    /// Appends the record to \p out as an object for scripts; nothing in this class.
    virtual void writeToAsJSON(std::string& out, int fileSourceId) const;

    /// All four functions in one pass; the numbers of Cp0_tilde, H0_tilde, S0_tilde and G0_tilde.
    /// A fixed-temperature record has an enthalpy but no Cp, S and G, and throws like those.
    /// \throws thermo::Exception 1 as the single functions do. It does not log: in an equilibrium
    /// iteration this is the usual end of a species' range.
    StandardState evaluate(const TemperatureTerms& terms) const;
    /// The first interval that holds \p T, null if there is none.
    const Polynomial* findInterval(double T) const;
    /// True for a record of a single temperature without a curve.
    bool isFixedTemperature() const;

    // Identity.
    /// Id of the species in its database, -1 outside of one.
    int getType() const { return type; }
    /// \throws thermo::Exception 4 if the species has an id already.
    void setType(int id);
    const std::string& getName() const { return name; }
    const std::string& getDescr() const { return descr; }
    /// Does not mark the species as modified.
    void setDescr(const std::string& text) { descr = text; }
    /// The reference-date code of the record, which names the compiler's source.
    const std::string& getRef() const { return ref; }
    bool isEmpty() const { return name.empty(); }

    // Formula.
    /// Number of terms of the formula.
    int size() const { return static_cast<int>(data->formula.size()); }
    /// The i-th term of the formula, unchecked; it stays the species'.
    const ChemicalElement* get(int i) const { return data->formula[static_cast<unsigned int>(i)]; }
    const ChemicalElement* operator[](int i) const { return get(i); }
    /// The formula itself, for loops over many species that must not copy.
    const ChemicalFormula& getFormula() const { return data->formula; }
    /// Stores a copy of \p formula, which stays the caller's. Marks the species as modified.
    void setFormula(const ChemicalFormula* formula);
    /// \returns a new formula, the caller's.
    ChemicalFormula* copyFormula() const;
    /// Sum of the oxidation numbers over all atoms.
    double getValence() const;

    // Simple values. The setters mark the species as modified.
    void setM(double molarMass);
    /// Gas constant of the species, J/(g K).
    double getRm() const { return gasConstant / getM(); }
    /// Gas constant of the species, J/(kg K).
    double getR() const { return 1000.0 * gasConstant / getM(); }
    /// Standard pressure, Pa.
    static double getP0() { return standardPressure; }
    void setCondensed(int phase);
    /// Heat of formation at 298.15 K, J/mol; for a fixed-temperature record its assigned enthalpy.
    double getDHf298_15() const { return dHf298_15; }
    void setDHf298_15(double enthalpy);
    /// H(298.15 K) - H(0 K), J/mol.
    double getDH298_15_0() const { return dH298_15_0; }
    void setDH298_15_0(double enthalpy);

    // Intervals, in ascending temperature.
    int getIntervalSize() const { return static_cast<int>(data->intervals.size()); }
    /// The i-th interval, unchecked; it stays the species' own or that of the source it shares.
    Polynomial* getInterval(unsigned int i) const { return data->intervals[i].get(); }
    /// Appends an interval and takes ownership of it. Does not mark the species as modified.
    void addInterval(Polynomial* interval);
    void removeIntervals();

    // Where the species comes from.
    int getSourceId() const { return sourceId; }
    /// \throws thermo::Exception 15 if the source is set already.
    void setSourceId(int id);
    int getTableSourceId() const { return tableSourceId; }
    /// \throws thermo::Exception 15 if the source is set already.
    void setTableSourceId(int id);
    /// Forgets id and sources, so that they can be set again.
    void resetIds();
    void resetSourceIds();
    /// True if the thermodynamic data differ from the file.
    bool isModified() const { return modified; }
    void setModified(bool differs) { modified = differs; }
    /// True if the tables differ from the file.
    bool isTableModified() const { return tableModified; }
    void setTableModified(bool differs) { tableModified = differs; }

    /// True if both are the same species of a database, by its id.
    bool operator==(const Species* other) const { return type == other->type; }
    bool operator==(const std::string& otherName) const { return name == otherName; }
    bool operator==(const ChemicalFormula& formula) const { return data->formula == formula; }
    /// Order of lists: gases first, then condensed species by phase number, each by name.
    bool operator<(const Species* other) const;
    bool operator>(const Species* other) const;

    // Reference state.
    /// Reference temperature, K: that of a fixed-temperature record, 298.15 for others.
    /// \throws thermo::Exception 1 for a gas whose intervals do not hold 298.15 K.
    double getT0() const;
    /// Moves a fixed-temperature record to \p T.
    /// \throws thermo::Exception 1 for any other species.
    void setT0(double T);
    /// \p p if the table of specific heat or of density holds it. \throws thermo::Exception 2 else.
    double getP(double p) const;

    // Tables over temperature (K, x) and pressure (Pa, y): specific heat J/(mol K), density kg/m3,
    // viscosity Pa s, conductivity W/(m K); boiling temperature Ts (K) over pressure (Pa), heat of
    // vaporisation Qs (J/kg) over boiling temperature (K).
    bool hasCpTable() const { return data->cp != nullptr; }
    bool hasRhoTable() const { return data->rho != nullptr; }
    bool hasMuTable() const { return data->mu != nullptr; }
    bool hasLambdaTable() const { return data->lambda != nullptr; }
    bool hasTsTable() const { return data->ts != nullptr; }
    bool hasQsTable() const { return data->qs != nullptr; }
    /// The table, null if there is none; it stays the species' own or that of its source.
    const math::interpolation::Interpolation2D* getCpTable() const { return data->cp.get(); }
    const math::interpolation::Interpolation2D* getRhoTable() const { return data->rho.get(); }
    const math::interpolation::Interpolation2D* getMuTable() const { return data->mu.get(); }
    const math::interpolation::Interpolation2D* getLambdaTable() const
    {
        return data->lambda.get();
    }
    const math::interpolation::Interpolation* getTsTable() const { return data->ts.get(); }
    const math::interpolation::Interpolation* getQsTable() const { return data->qs.get(); }
    /// Takes ownership of the table in place of the present one; marks the tables as modified.
    void setCpTable(math::interpolation::Interpolation2D* table);
    void setRhoTable(math::interpolation::Interpolation2D* table);
    void setMuTable(math::interpolation::Interpolation2D* table);
    void setLambdaTable(math::interpolation::Interpolation2D* table);
    void setTsTable(math::interpolation::Interpolation* table);
    void setQsTable(math::interpolation::Interpolation* table);
    /// Gives the table up; marks the tables as modified.
    void removeCpTable();
    void removeRhoTable();
    void removeMuTable();
    void removeLambdaTable();
    void removeTsTable();
    void removeQsTable();

    /// True if the table exists and holds the temperature.
    bool checkCpTable(double T) const;
    bool checkRhoTable(double T) const;
    bool checkMuTable(double T) const;
    bool checkLambdaTable(double T) const;
    /// True if the table exists and holds the temperature and, unless \p anyPressure, the pressure.
    bool checkCpTable(double T, double p, bool anyPressure) const;
    bool checkRhoTable(double T, double p, bool anyPressure) const;
    bool checkMuTable(double T, double p, bool anyPressure) const;
    bool checkLambdaTable(double T, double p, bool anyPressure) const;
    /// True if the table exists and holds the argument.
    bool checkTsTable(double p) const;
    bool checkQsTable(double Ts) const;

    /// Specific heat, J/(mol K). With \p clampPressure a pressure outside the table is moved to its
    /// nearer end. \throws thermo::Exception 1 without a table, or for a temperature or pressure
    /// outside of it; likewise the next three.
    double getInterpolatedCp(double T, double p, bool clampPressure) const;
    /// Density, kg/m3.
    double getInterpolatedRho(double T, double p, bool clampPressure) const;
    /// Viscosity, Pa s.
    double getInterpolatedMu(double T, double p, bool clampPressure) const;
    /// Thermal conductivity, W/(m K).
    double getInterpolatedLambda(double T, double p, bool clampPressure) const;
    /// Boiling temperature, K; the pressure is moved into the table.
    /// \throws thermo::Exception 1 without a table.
    double getInterpolatedTs(double p) const;
    /// Heat of vaporisation, J/kg; the temperature is moved into the table.
    /// \throws thermo::Exception 1 without a table.
    double getInterpolatedQs(double Ts) const;

    /// Enthalpy that the species takes up from \p T1 to \p T2 at \p p, J/mol: the integral of the
    /// table of specific heat by trapezoids of 0.1 K, whose last part-step is left out. 0 without a
    /// table, or, after a warning, outside of it.
    double getDeltaH_Cp(double T1, double T2, double p) const;
    /// Enthalpy that the species gains by being at \p p instead of 1e5 Pa, J/mol: for a gas
    /// R T ln(p/1e5), for a liquid (p - 1e5) M / rho with the mean of the densities at the
    /// reference temperature \p T1 and at \p T, for a solid 0.
    double getDeltaH_rho(double T1, double T, double p) const;

    // Transport properties of a gas, alone and together with another one.
    /// The species has data of its own.
    bool isTransportPropertiesAvailable() const { return data->transport != nullptr; }
    /// The species has data for pairs with other species.
    bool isTransportIPropertiesAvailable() const { return !data->interactions.empty(); }
    /// Takes ownership of the species' own data in place of the present ones.
    void setTransportProperties(properties::TransportProperties* transport);
    /// Takes ownership of the data for the pair with the species of the name \p other, in place of
    /// the present ones.
    void setTransportProperties(const std::string& other,
                                properties::TransportProperties* transport);
    /// Viscosity, Pa s, at \p T, K.
    /// \throws thermo::Exception 0 without data, 1 for a temperature outside of them.
    double getViscosity(double T) const;
    /// Thermal conductivity, mW/(cm K), at \p T, K: a tenth of the number is in W/(m K).
    /// \throws thermo::Exception as getViscosity(double).
    double getConductivity(double T) const;
    /// Interaction viscosity with \p other, Pa s, at \p T, K.
    /// \throws thermo::Exception 0 without data for this pair, 1 for a temperature outside of them.
    double getViscosity(const Species* other, double T) const;
    /// Interaction conductivities are kept but not given out.
    /// \throws thermo::Exception 0 always.
    [[noreturn]] double getConductivity(const Species* other, double T) const;
    /// The three values above for the sums over mixtures, where most pairs have no data: 0 where
    /// those throw.
    double findViscosity(double T) const;
    double findConductivity(double T) const;
    double findViscosity(const Species* other, double T) const;

protected:
    /// What all copies of a species share; the species it was made for owns it.
    struct KETRA_API Data {
        Data();
        /// A deep copy.
        Data(const Data& other);
        Data& operator=(const Data&) = delete;
        ~Data();

        ChemicalFormula formula;                            // in file order
        std::vector<std::unique_ptr<Polynomial>> intervals; // in file order, ascending
        std::unique_ptr<math::interpolation::Interpolation2D> cp, rho, mu, lambda;
        std::unique_ptr<math::interpolation::Interpolation> ts, qs;
        std::unique_ptr<properties::TransportProperties> transport;
        // with other species, by their names
        std::map<std::string, std::unique_ptr<properties::TransportProperties>> interactions;
    };

    /// An empty species.
    Species();
    /// Shares the data of \p other, which must outlive the copy.
    Species(const Species& other);
    /// Takes all of \p other over. From an owner it makes a deep copy, so that both own what they
    /// hold; from a sharing copy it shares likewise.
    Species& operator=(const Species& other);

    /// The data for a change: a sharing copy first makes its own.
    Data& own();

    int type = -1;
    std::string name;  // key in the database
    std::string descr; // free comment from the file
    std::string ref;   // reference-date code
    int condensed = 0;
    bool liquid = false;
    double charge = 0.0;     // sum of the numbers of E in the formula
    double dHf298_15 = 0.0;  // J/mol
    double dH298_15_0 = 0.0; // J/mol
    double M = 0.0;          // g/mol
    int sourceId = -1;
    bool modified = false;
    int tableSourceId = -1;
    bool tableModified = false;

private:
    util::Lent<Data> data;
};

} // namespace thermo
