// A rule of the lab's own for a keyword, in the library that holds documents against schemas.
#pragma once

#include <valijson/constraint_builder.hpp>
#include <valijson/constraints/concrete_constraints.hpp>
#include <valijson/internal/adapter.hpp>
#include <valijson/validation_results.hpp>

#include <functional>
#include <string>
#include <vector>

namespace lab {

// Whether a value is right; tells `results`, where there are any, if it is not.
using Rule = std::function<bool(
    const valijson::adapters::Adapter& value, const std::vector<std::string>& place,
    valijson::ValidationResults* results)>;

// Makes the rule from what stands after the keyword in a schema.
class RuleBuilder : public valijson::ConstraintBuilder {
  public:
    using Make = std::function<Rule(const valijson::adapters::Adapter& keyword)>;
    explicit RuleBuilder(Make make) : make_(std::move(make)) {}

    valijson::constraints::Constraint*
    make(const valijson::adapters::Adapter& keyword) const override {
        return new Constraint(make_(keyword));
    }

  private:
    class Constraint : public valijson::constraints::PolyConstraint {
      public:
        explicit Constraint(Rule rule) : rule_(std::move(rule)) {}
        bool validate(
            const valijson::adapters::Adapter& value, const std::vector<std::string>& place,
            valijson::ValidationResults* results) const override {
            return rule_(value, place, results);
        }

      private:
        valijson::constraints::Constraint* cloneInto(void* memory) const override {
            return new (memory) Constraint(*this);
        }
        std::size_t sizeOf() const override { return sizeof *this; }
        Rule rule_;
    };

    Make make_;
};

} // namespace lab
