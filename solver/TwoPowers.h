#pragma once

namespace solver {

/// y = A t^p + C t^q for t > 0, with A, C >= 0 and not both 0, p and q of one sign: the shape of the cyclic
/// stress-strain curve and of the strain-life relations. Everything is held as logarithms, so that no
/// magnitude overflows.
class TwoPowers {
  public:
    /// ln A, p, ln C, q; the logarithm of a factor 0 is minus infinity.
    TwoPowers(double logA, double p, double logC, double q);

    /// ln y at ln t.
    double logValue(double logArgument) const;
    /// ln t at ln y: Newton's rule in log-log axes. There the function is convex, and the iteration starts
    /// where one power alone reaches y, on the side from which every tangent stays short of the root; so it
    /// walks to the root without ever passing it.
    double logArgument(double logValue) const;

  private:
    double logA_, p_, logC_, q_;
};

} // namespace solver
