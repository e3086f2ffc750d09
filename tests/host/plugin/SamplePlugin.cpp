// A minimal plug-in for the loader's tests.
extern "C" int kuvo_sample_plugin_answer()
{
    return 42;
}
