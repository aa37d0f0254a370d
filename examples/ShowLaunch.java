// Prints what the JVM was started with, so a launch can be checked by eye or by a test.
public final class ShowLaunch {
    public static void main(String[] args) {
        for (int i = 0; i < args.length; i++) {
            System.out.println("arg[" + i + "]=" + args[i]);
        }
        for (String key : new String[] {"qorvel.greeting", "user.dir", "java.class.path",
                "java.security.policy"}) {
            System.out.println("property " + key + "=" + System.getProperty(key));
        }
        for (String name : new String[] {"CLASSPATH", "PATH", "DEMO_USER"}) {
            System.out.println("env " + name + "=" + System.getenv(name));
        }
        System.err.println("ShowLaunch done");
    }
}
