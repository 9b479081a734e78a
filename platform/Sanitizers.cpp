// Linked into sanitizer builds, the program included: what its own libraries make necessary.

// The GL driver and GTK's modules stay loaded until the leak report is made, which could not name,
// and so not suppress, frames of an unloaded library.
extern "C" int dlclose(void* /*library*/) {
  return 0;
}

// NOLINTBEGIN(bugprone-reserved-identifier): the sanitizers' names
extern "C" const char* __lsan_default_suppressions() {
  // GLib: strings that GTK's file chooser keeps at times; ours are all g_autofree.
  return "leak:libfontconfig.so\nleak:libglib-2.0.so\n"
         "leak:swrast_dri.so\nleak:zink_dri.so\nleak:libvulkan_lvp.so\nleak:libgallium\n";
}
extern "C" const char* __lsan_default_options() {
  return "print_suppressions=0";
}

// A refused allocation is for the program to answer.
extern "C" const char* __asan_default_options() {
  return "allocator_may_return_null=1";
}
// NOLINTEND(bugprone-reserved-identifier)
