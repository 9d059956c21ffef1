// Showing, ordering and classifying link values through a database that follows the links.
#include <gtest/gtest.h>

#include <map>
#include <utility>

#include "model/data_type_info.h"
#include "model/link_resolver.h"
#include "platform/environment_scope.h"

using namespace verdal::model;

namespace {

// A database of a few fields and stored values; each link field leads to one field of another.
class FakeDatabase : public TLinkResolver {
 public:
  explicit FakeDatabase(std::string name) : name_(std::move(name)) {}

  int32_t AddField(int16_t type) {
    fields_.emplace_back();
    fields_.back().dataType = type;
    return static_cast<int32_t>(fields_.size()) - 1;
  }
  void Link(int32_t field, FakeDatabase* target, int32_t targetField) {
    links_[field] = {target, targetField};
  }
  void Store(int32_t node, int32_t field, std::string value) { values_[{node, field}] = value; }
  TDataTypeInfo& Field(int32_t i) { return fields_[static_cast<size_t>(i)]; }

  bool LinkChain(const TDataTypeInfo& linkField, std::vector<Hop>& chain) override {
    chain.clear();
    FakeDatabase* db = this;
    int32_t field = FieldIndexOf(linkField);
    chain.push_back({db, field});
    while (db != nullptr && db->Field(field).dataType == kTypeLink) {
      auto it = db->links_.find(field);
      if (it == db->links_.end()) return false;
      std::tie(db, field) = it->second;
      chain.push_back({db, field});
    }
    return true;
  }
  bool LinkTarget(const TDataTypeInfo& linkField, TLinkResolver*& database,
                  const TDataTypeInfo*& field) override {
    auto it = links_.find(FieldIndexOf(linkField));
    if (it == links_.end()) return false;
    database = it->second.first;
    field = it->second.first->FieldType(it->second.second);
    return true;
  }
  TDataTypeInfo* FieldType(int32_t i) override {
    return i >= 0 && static_cast<size_t>(i) < fields_.size() ? &fields_[static_cast<size_t>(i)]
                                                              : nullptr;
  }
  int32_t FieldIndexOf(const TDataTypeInfo& type) const override {
    for (size_t i = 0; i < fields_.size(); ++i)
      if (&fields_[i] == &type) return static_cast<int32_t>(i);
    return -1;
  }
  bool StoredValue(int32_t node, int32_t field, std::string& out) override {
    auto it = values_.find({node, field});
    if (it == values_.end()) return false;
    out = it->second;
    return true;
  }
  std::string_view Name() const override { return name_; }

 private:
  std::string name_;
  std::vector<TDataTypeInfo> fields_;
  std::map<int32_t, std::pair<FakeDatabase*, int32_t>> links_;
  std::map<std::pair<int32_t, int32_t>, std::string> values_;
};

}  // namespace

TEST(LinkDisplay, FollowsTheChainToTheLastFieldAndShowsItsType) {
  SeparatorScope scope(0x407, ",");
  // orders.customer -> customers.city -> cities.name; orders.amount -> prices.value (a number)
  FakeDatabase orders("orders"), customers("customers"), cities("cities"), prices("prices");
  const int32_t customer = orders.AddField(kTypeLink), amount = orders.AddField(kTypeLink);
  const int32_t city = customers.AddField(kTypeLink);
  const int32_t cityName = cities.AddField(kTypeText);
  const int32_t price = prices.AddField(kTypeNumber);
  orders.Link(customer, &customers, city);
  customers.Link(city, &cities, cityName);
  orders.Link(amount, &prices, price);
  customers.Store(5, city, "2");
  customers.Store(6, city, "3");
  cities.Store(2, cityName, "Bonn");
  cities.Store(3, cityName, "Aachen");
  prices.Store(0, price, "12.50");

  std::string out = "stale";
  orders.Field(customer).CreateDisplayString("5", out, false, false, &orders);
  EXPECT_EQ(out, "Bonn");
  orders.Field(amount).CreateDisplayString("0abc", out, false, false, &orders);
  EXPECT_EQ(out, "12,50");  // shown as the number it is at the far end
  orders.Field(customer).CreateDisplayString("7", out, false, false, &orders);
  EXPECT_EQ(out, "");  // no such customer
  cities.Store(4, cityName, "x");
  customers.Store(8, city, "9");
  orders.Field(customer).CreateDisplayString("8", out, false, false, &orders);
  EXPECT_EQ(out, "");  // the customer's city is missing

  // Ordered by what is shown, not by the stored ids.
  const TDataTypeInfo& link = orders.Field(customer);
  EXPECT_EQ(link.Compare("5", "6", false, false, true, nullptr, &orders), 1);
  EXPECT_EQ(link.Compare("5", "6", false, false, true, nullptr, nullptr), -1);

  EXPECT_EQ(link.DisplayClass(&orders), kDisplayText);
  EXPECT_EQ(orders.Field(amount).DisplayClass(&orders), kDisplayNumber);
  EXPECT_EQ(link.DisplayClass(nullptr), kDisplayLink);
}

TEST(LinkDisplay, BrokenChainsShowNothing) {
  FakeDatabase a("a"), b("b");
  const int32_t dangling = a.AddField(kTypeLink);  // leads nowhere
  const int32_t self = a.AddField(kTypeLink);
  const int32_t date = a.AddField(kTypeDate);
  a.Link(self, &a, date);
  a.Store(1, date, "2.3.2004.0.0.0.0");
  std::string out = "stale";
  a.Field(dangling).CreateDisplayString("1", out, false, false, &a);
  EXPECT_EQ(out, "");
  // A link into its own database is shown, but classed as text since it is no other database.
  a.Field(self).CreateDisplayString("1", out, false, false, &a);
  EXPECT_EQ(out, "02.03.2004");
  EXPECT_EQ(a.Field(self).DisplayClass(&a), kDisplayText);
  EXPECT_EQ(a.Field(dangling).DisplayClass(&a), kDisplayText);

  // Two databases linking to each other in a ring end as text rather than recursing forever.
  const int32_t back = b.AddField(kTypeLink);
  const int32_t forth = a.AddField(kTypeLink);
  a.Link(forth, &b, back);
  b.Link(back, &a, forth);
  EXPECT_EQ(a.Field(forth).DisplayClass(&a), kDisplayText);
}
