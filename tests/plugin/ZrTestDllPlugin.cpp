// A minimal plug-in for the library loader's tests. ZR_TEST_PLUGIN_ANSWER tells the builds apart, so a
// test can see which of two same-named libraries was loaded.
extern "C" int zrTestPluginAnswer() { return ZR_TEST_PLUGIN_ANSWER; }
