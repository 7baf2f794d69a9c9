// Part of every widget test: Qt's platform without a screen never frees the one screen that it makes up. Only
// what is allocated while that platform starts is passed over, which needs whole call stacks; a lost object
// of ours is still found. Without the sanitizers nobody calls these.

extern "C" const char* __lsan_default_suppressions()
{
    return "leak:QGuiApplicationPrivate::createPlatformIntegration";
}

extern "C" const char* __asan_default_options()
{
    return "fast_unwind_on_malloc=0";
}
