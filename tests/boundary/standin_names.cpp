// A library with the names that are bound of hidapi, for tests in which one of them is missing.
extern "C" {

void hid_init() {}
void hid_enumerate() {}
void hid_free_enumeration() {}
void hid_open_path() {}
void hid_close() {}
void hid_send_feature_report() {}
void hid_get_feature_report() {}
void hid_read_timeout() {}

}  // extern "C"
