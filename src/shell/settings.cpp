// settings.cpp — placeholder until the settings store lands.
