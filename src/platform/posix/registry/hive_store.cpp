// to be written
