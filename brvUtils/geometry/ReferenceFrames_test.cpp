#include "brvUtils/geometry/ReferenceFrames.h"

#include "brvUtils/geometry/CoordinateConventions.h"
#include "testing/CapturedOutput.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <deque>
#include <random>

namespace brvUtils {
namespace {

constexpr double pi = 3.141592653589793;

class ReferenceFrames : public ::testing::Test
{
protected:
    double random(double low, double high) { return std::uniform_real_distribution<double>(low, high)(generator_); }

    brv::Mark randomPose()
    {
        const brv::Vector3 p(random(-1e3, 1e3), random(-1e3, 1e3), random(-1e3, 1e3));
        const double roll = random(-pi, pi), pitch = random(-1.57, 1.57);
        return {p.x, p.y, p.z, roll, pitch, random(-pi, pi)};
    }

private:
    std::mt19937 generator_{1};
};

/// How far poses are apart, in metres and radians.
double apart(const brv::Mark& a, const brv::Mark& b)
{
    const auto angle = [](double x, double y) { return std::fabs(std::remainder(x - y, 2.0 * pi)); };
    return std::max({norm(a.position() - b.position()), angle(a.roll, b.roll), angle(a.pitch, b.pitch), angle(a.heading, b.heading)});
}

TEST_F(ReferenceFrames, ChainsAreTheProductsOfTheirTransforms)
{
    for (int i = 0; i < 2000; ++i) {
        std::deque<RelativePosition> positions;
        std::deque<Base> bases;
        Base* base = RelativePosition::getGlobalBase();
        brv::Transform product;
        for (int length = 0; length < 6; ++length) {
            positions.emplace_back(base, randomPose());
            base = &bases.emplace_back(&positions.back());
            product = product * brv::Transform(positions.back().getPlace());
            ASSERT_LT(apart(positions.back().getAbsolutePlace(), product.toMark()), 1e-9);
        }
        const brv::Vector3 point(random(-10.0, 10.0), random(-10.0, 10.0), random(-10.0, 10.0));
        ASSERT_LT(norm(base->resolve(point) - product * point), 1e-9);
    }
}

TEST_F(ReferenceFrames, EndAtTheGlobalOne)
{
    Base* const global = RelativePosition::getGlobalBase();
    EXPECT_EQ(global, RelativePosition::getGlobalBase());
    EXPECT_EQ(global->getOrigin(), nullptr);
    EXPECT_EQ(global->resolve({1.0, 2.0, 3.0}), brv::Vector3(1.0, 2.0, 3.0));
    const brv::Mark place(1.0, 2.0, 3.0, 4.0, 5.0, 6.0); // angles out of range stay
    EXPECT_EQ(RelativePosition(global, place).getAbsolutePlace(), place);
    EXPECT_EQ(RelativePosition(nullptr, place).getAbsolutePlace(), place);

    RelativePosition platform(global, {10.0, 0.0, 0.0, 0.0, 0.0, pi / 2});
    Base base(&platform);
    RelativePosition sensor(&base, {1.0, 0.0, 0.0, 0.0, 0.0, 0.0});
    EXPECT_LT(apart(sensor.getAbsolutePlace(), {10.0, 1.0, 0.0, 0.0, 0.0, pi / 2}), 1e-12);
    base.setOrigin(nullptr);
    EXPECT_EQ(sensor.getAbsolutePlace(), sensor.getPlace());
}

TEST_F(ReferenceFrames, PlacesChangeInParts)
{
    RelativePosition platform(RelativePosition::getGlobalBase(), {10.0, 0.0, 0.0, 0.0, 0.0, 0.0});
    Base base(&platform);
    RelativePosition position(&base, {1.0, 2.0, 3.0, 0.4, 0.5, 0.6});
    position.setPos(7.0, 8.0, 9.0);
    EXPECT_EQ(position.getPlace(), brv::Mark(7.0, 8.0, 9.0, 0.4, 0.5, 0.6));
    position.setDir(0.1, 0.2, 0.3);
    EXPECT_EQ(position.getPlace(), brv::Mark(7.0, 8.0, 9.0, 0.3, 0.2, 0.1));
    EXPECT_EQ(position.getDir(), brv::Vector3(0.1, 0.2, 0.3));
    EXPECT_EQ(position.getTransformationMatrix() * brv::Vector3(), brv::Vector3(7.0, 8.0, 9.0));

    const RelativePosition copy = position;
    position.setAbsolutePlace({1.0, 1.0, 1.0, 1.0, 1.0, 1.0});
    EXPECT_EQ(position.getPlace(), copy.getPlace()) << "set by setPlace only";
    position.changeLocalBase(RelativePosition::getGlobalBase());
    EXPECT_EQ(position.getAbsolutePlace(), copy.getPlace()) << "the numbers stay";
    EXPECT_NEAR(copy.getAbsolutePlace().x, 17.0, 1e-12);
    EXPECT_EQ(copy.getLocalBase(), &base);
}

TEST_F(ReferenceFrames, AreShownByTheirNumbers)
{
    const brvTesting::CapturedOutput captured;
    const RelativePosition position(RelativePosition::getGlobalBase(), {1.0, -2.5, 1234567.0, 0.1, 0.2, 0.3});
    position.displayChain();
    position.display();
    EXPECT_EQ(captured.out(),
        "*************\n x : 1\n y : -2.5\n z : 1.23457e+06\n h : 0.3\n p : 0.2\n r : 0.1\n*************\n");
}

TEST_F(ReferenceFrames, ConventionsUndoEachOther)
{
    for (int i = 0; i < 1'000'000; ++i) {
        const brv::Mark pose = randomPose();
        const double longitudinal = random(-5.0, 5.0), vertical = random(-5.0, 5.0);
        brv::Mark orvik, back;
        FromVeloraToOrvik(pose, orvik, longitudinal, vertical);
        FromOrvikToVelora(orvik, back, longitudinal, vertical);
        ASSERT_LT(apart(pose, back), 1e-9);
    }
}

TEST_F(ReferenceFrames, ConventionsTurnRoundAndShift)
{
    const brv::Mark pose(1.0, 2.0, 3.0, 0.0, 0.0, 0.5);
    brv::Mark turned;
    FromVeloraToOrvik(pose, turned, 0.0, 0.0);
    EXPECT_LT(apart(turned, {1.0, 2.0, 3.0, 0.0, 0.0, 0.5 + pi}), 1e-12);
    FromVeloraToOrvik({0.0, 0.0, 0.0, 0.0, 0.0, pi / 2}, turned, 2.0, 1.0);
    EXPECT_LT(apart(turned, {0.0, 2.0, 1.0, 0.0, 0.0, -pi / 2}), 1e-12);
    FromOrvikToVelora(pose, turned, 0.0, 1.0);
    EXPECT_LT(apart(turned, {1.0, 2.0, 2.0, 0.0, 0.0, 0.5 + pi}), 1e-12) << "down";

    const double numbers[6] = {1.0, 2.0, 3.0, 0.4, 0.5, 0.6};
    brv::Mark mark;
    copyMarkFromXYZHPR(mark, numbers);
    EXPECT_EQ(mark, brv::Mark(1.0, 2.0, 3.0, 0.6, 0.5, 0.4));
    double copied[6];
    copyXYZHPRFromMark(copied, mark);
    EXPECT_TRUE(std::equal(numbers, numbers + 6, copied));
}

} // namespace
} // namespace brvUtils
