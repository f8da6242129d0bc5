#include "Foundation/NSAutoreleasePool.h"
#include "Foundation/NSKeyValueBinding.h"
#include "Probe.h"

using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

const auto kGain = "gain"_ns, kModelGain = "model.gain"_ns, kTold = "told"_ns;

RetainPtr<NSNumber> Number(double value) { return NSNumber::numberWithDouble(value); }

struct NSKeyValue : testing::Test {
    RetainPtr<Probe> probe(const char* name) { return Probe::named(name, journal); }
    Journal journal;
    RetainPtr<Probe> model = probe("model"), other = probe("other"), watcher = probe("w");
};

TEST_F(NSKeyValue, ValuesAreBoxedAndConverted)
{
    model->setValue(NSNumber::numberWithInt(3).get(), kGain);
    EXPECT_EQ(model->gain(), 3.0);
    EXPECT_TRUE(model->valueForKey(kGain)->isEqual(Number(3).get()));
    model->setValue(nullptr, kGain);
    EXPECT_EQ(model->gain(), 0.0);
    model->setValue("no number"_ns.get(), "loud"_ns.get());
    EXPECT_FALSE(model->loud());
    model->setValue(other, "model"_ns.get());
    model->setValueForKeyPath(Number(0.25).get(), kModelGain);
    EXPECT_EQ(other->gain(), 0.25);
    EXPECT_EQ(model->valueForKeyPath("self.model.half"_ns.get())->description()->utf8(), "0.125");
    other->setValueForKeyPath(Number(1).get(), kModelGain); // no model there: nothing happens
    EXPECT_FALSE(other->valueForKeyPath(kModelGain));
}

TEST_F(NSKeyValue, UnknownKeysAreNamed)
{
    const auto tune = "tune"_ns, half = "half"_ns;
    const auto isNamed = AllOf(StartsWith(NSUndefinedKeyException), HasSubstr("Probe"), HasSubstr("tune"));
    EXPECT_THAT(Thrown([&] { model->setValue(nullptr, tune); }), isNamed);
    EXPECT_THAT(Thrown([&] { model->valueForKey(tune); }), isNamed);
    EXPECT_THAT(Thrown([&] { model->bind(NSValueBinding, other, tune); }), isNamed);
    EXPECT_FALSE(model->infoForBinding(NSValueBinding));
    EXPECT_THAT(Thrown([&] { model->setValue(nullptr, half); }), HasSubstr("half")); // it is only read
    EXPECT_THAT(Thrown([&] { model->valueForKey(nullptr); }), StartsWith(NSUndefinedKeyException));
}

TEST_F(NSKeyValue, ObserversAreToldOnceForEachChange)
{
    int context = 0;
    model->addObserverForKeyPath(watcher, kGain, nullptr);
    model->addObserverForKeyPath(watcher, kTold, &context);
    model->setValue(Number(1).get(), kGain);
    model->setValue(Number(2).get(), kTold); // its setter tells by itself
    model->setTold(3);
    model->setGain(9); // says nothing
    model->didChangeValueForKey("gai");
    EXPECT_EQ(journal.take(), "w:gain=1 w:told=2+ w:told=3+");
    model->removeObserverForKeyPath(watcher, kTold);
    model->removeObserverForKeyPath(watcher, kTold);
    model->setTold(4);
    model->didChangeValueForKey("gain");
    EXPECT_EQ(journal.take(), "w:gain=9");
}

TEST_F(NSKeyValue, PathsFollowTheObjectInTheMiddle)
{
    const auto owner = probe("owner");
    owner->addObserverForKeyPath(watcher, kModelGain, nullptr);
    owner->setValue(model, "model"_ns.get());
    model->setValue(Number(1).get(), kGain);
    owner->setValue(other, "model"_ns.get());
    model->setValue(Number(5).get(), kGain); // no longer on the path
    other->setValue(Number(2).get(), kGain);
    EXPECT_EQ(journal.take(), "w:model.gain=0 w:model.gain=1 w:model.gain=0 w:model.gain=2");
    owner->setModel(nullptr); // unannounced, and `other` ends while it is on the path
    other.reset();
    EXPECT_EQ(journal.take(), "~other");
    owner->setValue(model, "model"_ns.get());
    EXPECT_EQ(journal.take(), "w:model.gain=5");
}

TEST_F(NSKeyValue, WhoDiesIsForgotten)
{
    model->addObserverForKeyPath(watcher, kGain, nullptr);
    watcher.reset();
    model->didChangeValueForKey("gain");
    EXPECT_EQ(journal.take(), "~w");

    model->addObserverForKeyPath(other, kGain, nullptr);
    model.reset();
    EXPECT_EQ(journal.take(), "~model");
    other->onDealloc = [&](NSObject* self) { self->addObserverForKeyPath(self, kGain, nullptr); };
    other.reset();
    for (int i = 0; i < 100; ++i) probe("reborn")->didChangeValueForKey("gain"); // at the same address
    EXPECT_THAT(journal.take(), testing::Not(HasSubstr(":gain")));
}

TEST_F(NSKeyValue, ObserversMayComeAndGoWhileTheyAreTold)
{
    const auto second = probe("second"), late = probe("late");
    auto doomed = probe("doomed");
    for (Probe* each : {watcher.get(), second.get(), doomed.get()}) model->addObserverForKeyPath(each, kGain, nullptr);
    watcher->onNews = [&](NSObject*) {
        model->removeObserverForKeyPath(second, kGain);
        model->removeObserverForKeyPath(watcher, kGain);
        model->addObserverForKeyPath(late, kGain, nullptr);
        doomed.reset();
    };
    model->didChangeValueForKey("gain");
    EXPECT_EQ(journal.take(), "w:gain=0 ~doomed");
    model->didChangeValueForKey("gain");
    EXPECT_EQ(journal.take(), "late:gain=0");

    late->onNews = [&](NSObject* changed) { // ends what it observes, and so its own observation
        late->onNews = {};
        EXPECT_EQ(changed, model.get());
        model.reset();
    };
    model->didChangeValueForKey("gain");
    EXPECT_EQ(journal.take(), "late:gain=0 ~model");
}

TEST_F(NSKeyValue, DictionariesTakeEveryKeyAndTell)
{
    const auto dictionary = make<NSMutableDictionary>();
    const auto dotted = "a.b"_ns, selfDotted = "self.a.b"_ns;
    dictionary->addObserverForKeyPath(watcher, dotted, nullptr);
    dictionary->addObserverForKeyPath(watcher, selfDotted, nullptr);
    dictionary->setValue(Number(1).get(), dotted);
    EXPECT_EQ(dictionary->objectForKey("a.b"), dictionary->valueForKeyPath(dotted).get());
    dictionary->setObject(Number(2).get(), dotted);
    dictionary->setValue(nullptr, dotted);
    dictionary->setObject(Number(3).get(), "b"_ns.get());
    EXPECT_EQ(journal.take(), "w:a.b=1 w:self.a.b=1 w:a.b=2 w:self.a.b=2 w:a.b=null w:self.a.b=null");
    EXPECT_FALSE(dictionary->valueForKey("never"_ns.get()));
    EXPECT_THAT(Thrown([&] { NSDictionary::dictionary({})->setValue(model, dotted); }),
                AllOf(StartsWith(NSInvalidArgumentException), HasSubstr("a.b")));
}

/// A bound control writes down what it is sent.
struct Control : Probe {
    void setValueForBinding(NSObject* value, const char* binding) override
    {
        journal->note(std::string(binding) + "=" + (value ? value->description()->utf8() : "null"));
    }
};

struct NSKeyValueBinding : NSKeyValue {
    NSKeyValueBinding() { control->journal = &journal; }
    NSAutoreleasePool pool;
    RetainPtr<Control> control = make<Control>();
};

TEST_F(NSKeyValueBinding, SendsTheValueAtOnceAndAtEachChange)
{
    model->setGain(0.5);
    control->bind(NSValueBinding, model, "self.gain"_ns.get());
    model->setValue(Number(0.75).get(), kGain);
    EXPECT_EQ(journal.take(), "value=0.5 value=0.75");
    const NSDictionary* info = control->infoForBinding(NSValueBinding);
    ASSERT_TRUE(info);
    EXPECT_EQ(info->objectForKey(NSObservedObjectKey), model.get());
    EXPECT_TRUE(info->objectForKey(NSObservedKeyPathKey)->isEqual("self.gain"_ns.get()));
    EXPECT_FALSE(control->infoForBinding("title"));

    control->bind(NSValueBinding, other, kGain); // takes the place of the first
    model->setValue(Number(1).get(), kGain);
    control->removeObserverForKeyPath(control, kGain); // a binding is no observer
    other->setValue(Number(2).get(), kGain);
    EXPECT_EQ(journal.take(), "value=0 value=2");
    control->unbind(NSValueBinding);
    other->setValue(Number(3).get(), kGain);
    EXPECT_EQ(journal.take(), "");
    EXPECT_FALSE(control->infoForBinding(NSValueBinding));
}

TEST_F(NSKeyValueBinding, EndsWithEitherObject)
{
    const auto dictionary = make<NSMutableDictionary>();
    control->bind("title", dictionary, "name"_ns.get());
    control->bind(NSValueBinding, model, kGain);
    model.reset();
    EXPECT_EQ(journal.take(), "title=null value=0 ~model");
    EXPECT_FALSE(control->infoForBinding(NSValueBinding));
    EXPECT_TRUE(control->infoForBinding("title"));
    pool.drain(); // the answer holds what it tells of
    control.reset();
    EXPECT_EQ(journal.take(), "~");
    dictionary->setValue(Number(1).get(), "name"_ns.get());
    EXPECT_EQ(journal.take(), "");
}

TEST_F(NSKeyValueBinding, KeepsInfosThatLackSomething)
{
    const auto object = NSString::string(NSObservedObjectKey), path = NSString::string(NSObservedKeyPathKey);
    const auto withoutPath = NSDictionary::dictionary({{object, model}});
    control->bindWithInfo(NSValueBinding, withoutPath);
    EXPECT_EQ(control->infoForBinding(NSValueBinding), withoutPath.get());
    EXPECT_EQ(journal.take(), "");
    control->bindWithInfo(NSValueBinding, NSDictionary::dictionary({{object, model}, {path, kGain}}).get());
    model->setValue(Number(1).get(), kGain);
    EXPECT_EQ(journal.take(), "value=0 value=1");
}

TEST_F(NSKeyValueBinding, DefaultSetsTheKeyOfThatName)
{
    other->bind("gain", model, kGain);
    model->setValue(Number(0.5).get(), kGain);
    EXPECT_EQ(other->gain(), 0.5);
}

} // namespace
