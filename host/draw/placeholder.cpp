// placeholder until the first source of this folder
